#include "text/credit_roll.h"

#include <algorithm>

namespace {

// For entries without an end.
constexpr float kDefaultSpeed = 110.0f; // pixels of the reference height a second
constexpr float kDefaultBlock = 4.0f;   // seconds

constexpr float kEdgeFade = 0.12f;       // share of the output's height
constexpr float kPanelSoftness = 140.0f; // pixels of the reference height
constexpr float kGroupTravel = 16.0f;    // likewise, of a group that comes or goes

float smooth(float x) {
    const float t = std::clamp(x, 0.0f, 1.0f);
    return t * t * (3.0f - 2.0f * t);
}

// 0..1: a fade of `length` seconds, `passed` seconds in.
float fadeAt(float passed, float length) {
    if (!(passed >= 0.0f)) return 0.0f;
    return length > 0.0f ? smooth(passed / length) : 1.0f;
}

void appendRow(std::vector<float>& vertices, const CreditRoll& roll, const CreditRow& row, const CaptionFont& font,
               const CaptionPose& pose) {
    appendSolid(vertices, row.rule, row.ruleColor, pose);
    for (size_t i = 0; i < row.lineCount; ++i) {
        appendLine(vertices, font, roll.lines[row.firstLine + i], pose);
    }
}

// Of the rows from `first` to `end` those that the output shows under the pose's move.
void appendRows(std::vector<float>& vertices, const CreditRoll& roll, const CaptionFont& font, size_t first, size_t end,
                const CaptionPose& pose) {
    const float top = -pose.dy - roll.overhang, bottom = roll.height - pose.dy + roll.overhang;
    const CreditRow* const last = roll.rows.data() + end;
    const CreditRow* row = std::partition_point(roll.rows.data() + first, last,
                                                [&](const CreditRow& r) { return r.bottom < top; });
    for (; row != last && row->top <= bottom; ++row) appendRow(vertices, roll, *row, font, pose);
}

float blockLength(const CreditRoll& roll, const CaptionParams& params, float duration) {
    if (params.blockDuration > 0.0f) return params.blockDuration;
    if (duration <= 0.0f) return kDefaultBlock;
    return duration / static_cast<float>(std::max<size_t>(roll.groups.size(), 1));
}

// When all is over; 0 or less: never.
float rollEnd(const CreditRoll& roll, const CaptionParams& params, float duration) {
    if (params.mode != CreditMode::blocks || duration <= 0.0f) return duration;
    const float groups = static_cast<float>(std::max<size_t>(roll.groups.size(), 1));
    return std::min(duration, blockLength(roll, params, duration) * groups);
}

// Opacity of what stays throughout: the panel, and the header of mode "blocks".
float frameAlpha(const CreditRoll& roll, const CaptionParams& params, float time, float duration) {
    const float end = rollEnd(roll, params, duration);
    const float fade = end > 0.0f ? std::min(params.fadeDuration, 0.5f * end) : params.fadeDuration;
    return fadeAt(time, fade) * (end > 0.0f ? fadeAt(end - time, fade) : 1.0f);
}

void appendBlocks(std::vector<float>& vertices, const CreditRoll& roll, const CaptionParams& params,
                  const CaptionFont& font, float time, float duration, CaptionPose pose) {
    pose.dy = roll.headerDy;
    pose.alpha = frameAlpha(roll, params, time, duration);
    appendRows(vertices, roll, font, 0, roll.headerRows, pose);

    const CreditMoment moment = creditMoment(roll, params, time, duration);
    if (moment.group >= roll.groups.size()) return;
    const CreditGroup& group = roll.groups[moment.group];
    pose.alpha = moment.arrival * moment.stay;
    pose.dy = group.dy + kGroupTravel * roll.unit * (moment.stay - moment.arrival);
    appendRows(vertices, roll, font, group.firstRow, group.firstRow + group.rowCount, pose);
}

} // namespace

float creditSpeed(const CreditRoll& roll, const CaptionParams& params, float duration) {
    if (params.scrollSpeed > 0.0f) return params.scrollSpeed * roll.unit;
    if (duration <= 0.0f) return kDefaultSpeed * roll.unit;
    return (roll.height + roll.contentHeight) / duration;
}

CreditMoment creditMoment(const CreditRoll& roll, const CaptionParams& params, float time, float duration) {
    const size_t count = roll.groups.size();
    const float length = blockLength(roll, params, duration);
    const float place = time / length;
    const bool isOpen = duration <= 0.0f;
    if (count == 0 || !(place >= 0.0f)) return {count, 0.0f, 0.0f};
    const bool isOver = place >= static_cast<float>(count);
    if (isOver && !isOpen) return {count, 0.0f, 0.0f};
    CreditMoment moment;
    moment.group = isOver ? count - 1 : std::min(static_cast<size_t>(place), count - 1);
    const float passed = time - length * static_cast<float>(moment.group);
    const float fade = std::min(params.fadeDuration, 0.5f * length);
    const bool stays = isOpen && moment.group == count - 1;
    moment.arrival = fadeAt(passed, fade);
    moment.stay = stays ? 1.0f : fadeAt(length - passed, fade);
    return moment;
}

void appendCreditRoll(std::vector<float>& vertices, const CreditRoll& roll, const CaptionParams& params,
                      const CaptionFont& font, float time, float duration) {
    CaptionPose pose;
    pose.alpha = frameAlpha(roll, params, time, duration);
    if (params.showPanel) {
        appendSoft(vertices, roll.panel, kPanelSoftness * roll.unit, 0.0f, params.panelColor, pose);
    }

    pose.alpha = 1.0f;
    pose.edgeFade = params.mode == CreditMode::scroll ? kEdgeFade * roll.height : 0.04f * roll.height;
    pose.outputHeight = roll.height;
    if (params.mode == CreditMode::blocks) {
        appendBlocks(vertices, roll, params, font, time, duration, pose);
        return;
    }
    pose.dy = roll.height - creditSpeed(roll, params, duration) * time;
    if (time >= 0.0f) appendRows(vertices, roll, font, 0, roll.rows.size(), pose);
}
