// Pictures as textures, whatever the file: images by the system's decoders, SVG files by the rasterizer.
#pragma once

#include "gpu/textures.h"

// As loadTexture; a path that ends in ".svg" (any letter case) gives the drawing as a white mask, upright
// like every other picture.
TextureInfo loadPicture(const std::string& path);
