#include "config/glitch_params.h"

namespace {

constexpr struct {
    const char* style;
    const char* shader;
} kStyles[] = {
    {"vhstape", "GlitchVHSTape"},
    {"rain", "GlitchRain"},
    {"pattern", "GlitchPattern"},
    {"rainingblood", "GlitchRainingBlood"},
    {"glitchboi", "GlitchBoi"},
    {"sinewave", "GlitchSineWave"},
    {"rgbsplit", "GlitchRGBSplit"},
    {"gridvid", "GlitchGridVid"},
    {"moving", "GlitchMoving"},
    {"signal", "GlitchSignal"},
    {"blurmist", "GlitchBlurMist"},
    {"sw", "GlitchSW"},
    {"hardcode", "GlitchHardcode"},
    {"brokentv", "GlitchBrokenTV"},
    {"liquiddos", "GlitchLiquidDOS"},
    {"memleak", "GlitchMemleak"},
    {"crttube", "CRTTube"},
    {"pixel", "GlitchPixel"},
    {"chromaticaberration", "GlitchChromaticAberration"},
    {"retrobn", "GlitchRetroBN"},
};

constexpr auto kStyleWords = [] {
    Words<int, std::size(kStyles)> words{{}, Spelling::anyCase};
    for (size_t i = 0; i < std::size(kStyles); ++i) words.list[i] = {kStyles[i].style, static_cast<int>(i)};
    return words;
}();

constexpr KeyOf<GlitchParams> kKeys[] = {key<&GlitchParams::style>("style", kStyleWords, kPlainGlitch)};

} // namespace

GlitchParams readGlitchParams(const JsonValue& json, const Reading& at) {
    GlitchParams params;
    readKeys(json, kKeys, params, at);
    return params;
}

const char* glitchShaderName(int style) {
    return style == kPlainGlitch ? "Glitch" : kStyles[style].shader;
}
