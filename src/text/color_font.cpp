#include "text/color_font.h"

std::string resolveColorFontPath(const std::string&, const std::string&) {
    return {};
}

std::string resolveFontTexturePath(const std::string&, const std::string&, const std::string&) {
    return {};
}

bool loadColorFont(const std::string&, const std::string&, ColorFont&) {
    return false;
}

void releaseColorFont(ColorFont& font) {
    font = {};
}
