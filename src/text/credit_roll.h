// The credit roll: a header and rows of roles and names that scroll by or come in groups.
#pragma once

#include "config/caption_params.h"
#include "text/caption_font.h"
#include "text/caption_quads.h"

#include <vector>

// One line of text, or of texts side by side, and a thin rule. Pixels from the roll's top.
struct CreditRow {
    float top = 0.0f; // of the ink
    float bottom = 0.0f;
    size_t firstLine = 0; // in CreditRoll::lines
    size_t lineCount = 0;
    CaptionRect rule; // without area: none
    CaptionColor ruleColor;
};

// Entries that are seen together, in mode "blocks".
struct CreditGroup {
    size_t firstRow = 0;
    size_t rowCount = 0;
    float dy = 0.0f; // from the roll's top to the output's
};

// The whole roll laid out for one size of the output.
struct CreditRoll {
    float width = 0.0f; // of the output, pixels
    float height = 0.0f;
    float unit = 1.0f; // pixels to a pixel of the reference height
    CaptionRect panel; // behind the roll; without area: none
    std::vector<CaptionLine> lines;
    std::vector<CreditRow> rows; // tops and bottoms ascend
    size_t headerRows = 0;       // the first ones
    float headerDy = 0.0f;       // mode "blocks": where the header stands
    std::vector<CreditGroup> groups;
    float contentHeight = 0.0f; // from the first line's capitals to below the last line
    float overhang = 0.0f;      // that letters' cells stick out above and below their row
    size_t mostFloats = 0;      // of a frame
};

CreditRoll layoutCreditRoll(const CaptionParams& params, const CaptionFont& font, int width, int height);

// Pixels a second. Without a speed of its own a roll passes in just the entry's `duration` (seconds, 0 or
// less: no end): its first line comes in below at 0, its last one has left above at the end.
float creditSpeed(const CreditRoll& roll, const CaptionParams& params, float duration);

// What mode "blocks" shows at a time.
struct CreditMoment {
    size_t group = 0;     // as many as there are: none
    float arrival = 0.0f; // 0..1, of the group
    float stay = 0.0f;    // 1, falling to 0 as the group goes
};

CreditMoment creditMoment(const CreditRoll& roll, const CaptionParams& params, float time, float duration);

// The quads of a moment. Rows outside the output are not looked at.
void appendCreditRoll(std::vector<float>& vertices, const CreditRoll& roll, const CaptionParams& params,
                      const CaptionFont& font, float time, float duration);
