// The lower third: a panel with title and subtitle that comes in, stays, and leaves the way it came.
#pragma once

#include "config/caption_params.h"
#include "text/caption_font.h"
#include "text/caption_quads.h"

#include <vector>

// Where everything stands once it has come in, for one size of the output.
struct LowerThird {
    float width = 0.0f; // of the output, pixels
    float height = 0.0f;
    float unit = 1.0f; // pixels to a pixel of the reference height
    CaptionRect panel; // without area where there is no text at all
    CaptionRect accent;
    CaptionRect rule;  // between title and subtitle; without area where it is not shown
    CaptionRect badge; // around the label; without area where there is none
    std::vector<CaptionLine> title, subtitle, label;
};

LowerThird layoutLowerThird(const CaptionParams& params, const CaptionFont& font, int width, int height);

// How far a part has come in, 0..1 and eased, at `time` seconds of `duration` (0 or less: no end). Parts come
// one after the other: `delay` is the share of the entrance that passes before this one sets out, up to 0.4.
// The last seconds are the first ones backwards; an entry too short for both has half its time for each.
float lowerThirdProgress(const CaptionParams& params, float time, float duration, float delay);

// The quads of a moment, and how many floats they take at most.
void appendLowerThird(std::vector<float>& vertices, const LowerThird& layout, const CaptionParams& params,
                      const CaptionFont& font, float time, float duration);
size_t maxLowerThirdFloats(const LowerThird& layout);
