#include "config/shape_text_params.h"

namespace {

using Params = ShapeTextParams;

constexpr Range kRaster = {kMinRaster, kMaxRaster};

constexpr auto kAnchors = wordsOf<ShapeAnchor>(
    Spelling::exact, {{"left", ShapeAnchor::left}, {"center", ShapeAnchor::center}, {"right", ShapeAnchor::right}});

constexpr auto kAnimations = wordsOf<ShapeAnimation>(
    Spelling::exact,
    {{"pulse", ShapeAnimation::pulse}, {"reveal", ShapeAnimation::reveal}, {"wave", ShapeAnimation::still}});

constexpr KeyOf<Params> kKeys[] = {
    key<&Params::svgPath>("svgPath"),
    key<&Params::x>("x"),
    key<&Params::y>("y"),
    key<&Params::width>("width", atLeast(0.001f)),
    key<&Params::height>("height", atLeast(0.0f)),
    key<&Params::anchor>("anchor", kAnchors, ShapeAnchor::left),
    key<&Params::rotation>("rotation"),
    key<&Params::alpha>("alpha", {0.0f, 1.0f}),
    key<&Params::blendMode>("blendMode", kBlendModes, BlendMode::alpha),
    key<&Params::animation>("animation", kAnimations, ShapeAnimation::still),
    key<&Params::glow>("glow", atLeast(0.0f)),
    key<&Params::edge>("edge", atLeast(0.0f)),
    key<&Params::pulseAmount>("pulseAmount", atLeast(0.0f)),
    key<&Params::pulseSpeed>("pulseSpeed", atLeast(0.0f)),
    key<&Params::waveAmount>("waveAmount", atLeast(0.0f)),
    key<&Params::waveSpeed>("waveSpeed", atLeast(0.0f)),
    key<&Params::scanSpeed>("scanSpeed", atLeast(0.0f)),
    key<&Params::revealSpeed>("revealSpeed", atLeast(0.0f)),
    key<&Params::rasterWidth>("rasterWidth", kRaster),
    key<&Params::rasterHeight>("rasterHeight", kRaster),
    key<&Params::fillColor>("fillColor"),
    key<&Params::glowColor>("glowColor"),
};

} // namespace

ShapeTextParams parseShapeTextParams(const JsonValue& json, const Reading& at) {
    ShapeTextParams params;
    readKeys(json, kKeys, params, at);
    return params;
}
