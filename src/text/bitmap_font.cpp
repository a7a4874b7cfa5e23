#include "text/bitmap_font.h"

void loadBitmapFont(const std::string&) {}

GLuint bitmapGlyphTexture() {
    return 0;
}

void deleteBitmapFont() {}
