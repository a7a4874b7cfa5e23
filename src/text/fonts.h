// All fonts that a show has loaded: each atlas is decoded, measured and uploaded once.
#pragma once

#include "text/caption_font.h"
#include "text/color_font.h"

#include <string>
#include <unordered_map>

struct LoadedColorFont {
    ColorFont font;
    CaptionFont letters; // of the same atlas, as captions set them
};

struct Fonts {
    GLuint bitmapGlyphs = 0;                                     // text/bitmap_font.h; owned
    std::unordered_map<std::string, LoadedColorFont> colorFonts; // by description; their textures are owned
    int64_t atlasTexels = 0;                                     // of all of them
};

// Deletes every texture, when no font is in use any more, and empties the record.
void deleteFonts(Fonts& fonts);
