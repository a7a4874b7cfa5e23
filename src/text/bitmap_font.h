// The bitmap font: seven rows of bits a glyph, on the GPU as one process-wide integer texture.
#pragma once

#include "platform/gl.h"

#include <string>

struct Fonts;

constexpr int kBitmapGlyphRows = 7;

// Loads "bitmapfont.json" of a show into `bitmapGlyphs`; without a usable one that stays 0. It is R32I, 1D: texel
// code * 7 + r holds row r, top first, of the glyph with that code. Glyphs whose code is too high for the driver's
// largest texture are left out, which the log says. Needs a current context.
void loadBitmapFont(Fonts& fonts, const std::string& baseDir);

// A 1D texture of that kind, nearest and clamped, with `width` texels. Leaves no 1D texture bound.
GLuint createIntegerTexture(const GLint* texels, int width);
