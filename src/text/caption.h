// Captions in a colour font: the lower third, which names what is on screen, and the credit roll.
#pragma once

#include "foundation/json.h"
#include "text/color_font.h"

struct Caption {
    bool isCreditRoll = false;
    ColorFont font;
};

// Reads an entry's "params" and loads the font for a linked program; false when there is no font.
// `duration` is the entry's, in seconds; 0 or less has no end.
bool createCaption(Caption& caption, const JsonValue& params, bool isCreditRoll, float duration,
                   const std::string& baseDir, GLuint program);

// Draws the caption at `time` seconds into the current target, `width` x `height` pixels. Sets blending.
void drawCaption(Caption& caption, GLuint program, float time, int width, int height);

void releaseCaption(Caption& caption);
