#include "text/bitmap_text.h"

bool createBitmapText(BitmapText&, const JsonValue&, GLuint) {
    return true;
}

void drawBitmapText(const BitmapText&, GLuint, int, int) {}

void releaseBitmapText(BitmapText&) {}
