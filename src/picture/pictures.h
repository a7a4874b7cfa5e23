// Pictures as textures, whatever the file: images by the system's decoders, SVG files by the rasterizer.
#pragma once

#include "gpu/textures.h"
#include "picture/glow_mask.h"

#include <string>

constexpr int kPictureSide = 1024; // pixels of an SVG picture's longer side

// As loadTexture; a path that ends in ".svg" (any letter case) gives the drawing as a white mask on
// transparent black, upright like every other picture. The shorter side follows the drawing's aspect, and is
// 64 pixels or more.
TextureInfo loadPicture(TextureCache& textures, const std::string& path);

// A logo's mask as rasterized (the first texel row is its top) and the glow that goes with it, upright alike.
struct LogoTextures {
    TextureInfo mask;
    TextureInfo glow;    // none unless it was asked for
    GlowPlace glowPlace; // of no reach without a glow
};

// Rasterized for the requested size, once for each. False when there is no mask, which the log has explained.
bool loadLogo(TextureCache& textures, const std::string& svgPath, const std::string& baseDir, int width, int height,
              bool withGlow, LogoTextures& logo);
