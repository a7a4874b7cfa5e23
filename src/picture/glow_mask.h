// The light around a logo: its mask, blurred three ways, small enough to make while a show loads.
//
// Spreading a hard mask over a tenth of its height takes hundreds of samples a pixel to look smooth; done once
// it takes one.
#pragma once

#include "picture/svg_mask.h"

#include <cstdint>
#include <vector>

struct GlowMask {
    int width = 0; // texels
    int height = 0;
    std::vector<uint8_t> pixels; // square roots of coverage: R far, G near, B close; A 255. First row as the mask's
};

// Where the mask lies in its glow: a point of the mask, 0..1 each way, is at point * scale + offset of the glow,
// 0..1 again. The glow goes on beyond each side of the mask by offset / scale, and is dark there.
struct GlowPlace {
    float scaleX = 1.0f, scaleY = 1.0f;
    float offsetX = 0.0f, offsetY = 0.0f;
};
GlowPlace glowPlace(int maskWidth, int maskHeight);

constexpr int kMaxGlowSide = 512; // texels
GlowMask makeGlowMask(const SvgMask& mask);
