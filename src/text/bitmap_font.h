// The bitmap font: seven rows of bits a glyph, on the GPU as one process-wide integer texture.
#pragma once

#include "platform/gl.h"

#include <string>

// Loads "bitmapfont.json" of a show once per process; without one the glyph texture stays 0. Needs a
// current context.
void loadBitmapFont(const std::string& baseDir);

// R32I, 1D: texel code * 7 + r holds row r, top first, of the glyph with that code. 0: not loaded.
GLuint bitmapGlyphTexture();

// Deletes the texture: at shutdown.
void deleteBitmapFont();
