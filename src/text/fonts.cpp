#include "text/fonts.h"

void deleteFonts(Fonts& fonts) {
    if (fonts.bitmapGlyphs) glDeleteTextures(1, &fonts.bitmapGlyphs);
    for (const auto& [path, loaded] : fonts.colorFonts) glDeleteTextures(1, &loaded.font.texture);
    fonts = {};
}
