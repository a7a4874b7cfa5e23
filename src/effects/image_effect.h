// Plain image entries: an image fitted to the output.
#pragma once

#include "effects/effect.h"

// Texture coordinates are the quad's times scale plus offset.
struct ImageFit {
    float scaleX = 1.0f, scaleY = 1.0f;
    float offsetX = 0.0f, offsetY = 0.0f;
};

// Sizes in pixels; an aspect with a height of 0 or less counts as 1.
ImageFit fitImage(FitMode mode, int imageWidth, int imageHeight, int targetWidth, int targetHeight);

// Draws the draw's input or the image of channel 0; nothing without either.
void drawImageEffect(const Device& device, const Effect& effect, const Draw& draw);
