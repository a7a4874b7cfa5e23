// Kinetic text: lines of a colour font of which every glyph moves.
#pragma once

#include "foundation/json.h"
#include "text/color_font.h"

struct KineticText {
    ColorFont font;
};

// Reads an entry's "params" and loads the font for a linked program; false when there is no font.
bool createKineticText(KineticText& text, const JsonValue& params, const std::string& baseDir, GLuint program);

// Draws the text at `time` seconds into the current target, `width` x `height` pixels. Sets blending.
void drawKineticText(KineticText& text, GLuint program, float time, int width, int height);

void releaseKineticText(KineticText& text);
