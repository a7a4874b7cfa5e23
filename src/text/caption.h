// Captions in a colour font: the lower third, which names what is on screen, and the credit roll.
#pragma once

#include "config/caption_params.h"
#include "gpu/draw.h"
#include "gpu/uniform_values.h"
#include "gpu/vertex_stream.h"
#include "text/credit_roll.h"
#include "text/fonts.h"
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
// on its effect's clock, in seconds; 0 or less has no end. Lays out for an output of that size, in
// pixels.
bool createCaption(Fonts& fonts, Caption& caption, const CaptionParams& params, float duration,
                   const std::string& baseDir, const Program& program, int width, int height);

// Lays out for an output of `width` x `height` pixels, unless it is laid out for that already, and fills
// `vertices` with what is seen at `time` seconds; never with nothing. Needs no context.
void buildCaption(Caption& caption, float time, int width, int height);

// Blends as the caption's own params say.
void drawCaption(Caption& caption, Program& program, const UniformValues& values, const Draw& draw);

void releaseCaption(Caption& caption);
