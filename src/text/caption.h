// Captions in a colour font: the lower third, which names what is on screen, and the credit roll.
#pragma once

#include "config/caption_params.h"
#include "gpu/uniforms.h"
#include "gpu/vertex_stream.h"
#include "text/color_font.h"
#include "text/credit_roll.h"
#include "text/lower_third.h"

#include <vector>

struct Caption {
    CaptionParams params;
    float duration = 0.0f; // seconds on the effect's own clock; 0 or less has no end
    ColorFont font;
    const CaptionFont* letters = nullptr; // of the font, measured; not owned

    // Laid out for this size of the output, the one of the two that the params ask for.
    int layoutWidth = 0;
    int layoutHeight = 0;
    LowerThird lowerThird;
    CreditRoll creditRoll;

    std::vector<float> vertices; // of the frame
    VertexStream stream;
    UniformInfo fontTexture, atlasSize, cellSize; // of the program, resolved when it is made
};

// Loads the font for a linked program and says what was cut; false when there is no font. `duration` is the entry's
// on its effect's clock, in seconds; 0 or less has no end. Lays out for the size of the viewport.
bool createCaption(Caption& caption, const CaptionParams& params, float duration, const std::string& baseDir,
                   GLuint program);

// Lays out for an output of `width` x `height` pixels, unless it is laid out for that already, and fills
// `vertices` with what is seen at `time` seconds; never with nothing. Needs no context.
void buildCaption(Caption& caption, float time, int width, int height);

// Draws the caption at `time` seconds, in frame `frame`, into the current target, `width` x `height` pixels. Sets
// blending.
void drawCaption(Caption& caption, GLuint program, float time, int frame, int width, int height);

void releaseCaption(Caption& caption);
