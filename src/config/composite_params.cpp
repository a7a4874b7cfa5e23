#include "config/composite_params.h"

#include "foundation/json.h"

#include <algorithm>

namespace {

constexpr Range kShare = {0.0f, 1.0f};
constexpr float kLeastBlend = 0.01f; // seconds

constexpr KeyOf<BlendParams> kBlendKeys[] = {
    key<&BlendParams::startTime>("startTime", atLeast(0.0f)),
};
constexpr KeyOf<BlendParams> kBlendDurationKeys[] = {
    key<&BlendParams::blendDuration>("blendDuration", atLeast(kLeastBlend)),
};

constexpr KeyOf<TimelineBlendParams> kTimelineBlendKeys[] = {
    key<&TimelineBlendParams::loop>("loop"),
};

constexpr const char* kStartTime[] = {"startTime"};

constexpr KeyOf<BlendStep> kStepKeys[] = {
    key<&BlendStep::start>("start", atLeast(0.0f)).also(kStartTime),
    key<&BlendStep::duration>("duration", atLeast(0.001f)),
};

constexpr int kVertical = 0;
constexpr auto kSplitModes = wordsOf<int>(
    Spelling::anyCaseOrJoins,
    {{"vertical", kVertical}, {"horizontal", 1}, {"diagonal", 2}, {"wave", 3}, {"wavy", 3}, {"ondulada", 3}});

constexpr KeyOf<SplitParams> kSplitKeys[] = {
    key<&SplitParams::mode>("mode", kSplitModes, kVertical),
    key<&SplitParams::speed>("speed"),
    key<&SplitParams::amplitude>("amplitude", kShare),
    key<&SplitParams::position>("position", kShare),
    key<&SplitParams::feather>("feather", {0.0001f, 0.5f}),
    key<&SplitParams::angle>("angle"),
    key<&SplitParams::waveFrequency>("waveFrequency", atLeast(0.1f)),
    key<&SplitParams::invert>("invert"),
};

constexpr NamedValue<PipCorner> kCornerNames[] = {
    {"bottomright", PipCorner::bottomRight},
    {"bottomleft", PipCorner::bottomLeft},
    {"topright", PipCorner::topRight},
    {"topleft", PipCorner::topLeft},
};
constexpr auto kCorners = wordsOf(Spelling::anyCaseOrJoins, kCornerNames);

constexpr KeyOf<PipParams> kPipKeys[] = {
    key<&PipParams::scale>("pipScale", {0.05f, 1.0f}),
    key<&PipParams::margin>("pipMargin", atLeast(0.0f)),
    key<&PipParams::alpha>("pipAlpha", kShare),
    key<&PipParams::delay>("pipDelay", atLeast(0.0f)),
    key<&PipParams::fadeIn>("pipFadeIn", atLeast(0.0f)),
    key<&PipParams::corner>("corner", kCorners, PipCorner::bottomRight),
};

constexpr const char* kChannel0[] = {"iChannel0"};

constexpr KeyOf<PipParams> kPipImageKeys[] = {
    key<&PipParams::image>("image").as(TextForm::assetPath).also(kChannel0),
};

} // namespace

BlendParams readBlend(const JsonValue& params, float duration, const Reading& at) {
    BlendParams blend;
    readKeys(params, kBlendKeys, blend, at);
    blend.blendDuration = std::max(duration - blend.startTime, kLeastBlend);
    readKeys(params, kBlendDurationKeys, blend, at);
    blend.look = readMixLook(params, at);
    return blend;
}

TimelineBlendParams readTimelineBlend(const JsonValue& params, const Reading& at) {
    TimelineBlendParams blend;
    readKeys(params, kTimelineBlendKeys, blend, at);
    blend.hasSteps = find(params, "steps").kind == JsonKind::array;
    blend.look = readMixLook(params, at);
    return blend;
}

BlendStep readBlendStep(const JsonValue& json, const Reading& at) {
    BlendStep step;
    readKeys(json, kStepKeys, step, at);
    return step;
}

int splitModeCode(std::string_view name) {
    return valueOfWord(name, kSplitModes, kVertical);
}

SplitParams readSplit(const JsonValue& params, const Reading& at) {
    SplitParams split;
    readKeys(params, kSplitKeys, split, at);
    return split;
}

PipParams readPip(const JsonValue& params, bool insetIsImage, const Reading& at) {
    PipParams pip;
    pip.insetIsImage = insetIsImage;
    readKeys(params, kPipKeys, pip, at);
    if (insetIsImage) readKeys(params, kPipImageKeys, pip, at);
    return pip;
}
