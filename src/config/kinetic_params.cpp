#include "config/kinetic_params.h"

#include "foundation/json.h"

namespace {

using Params = KineticTextParams;

constexpr const char* kTextForEmpty = "WE ARE THE SIGNAL";

constexpr auto kAligns = wordsOf<KineticAlign>(
    Spelling::exact, {{"left", KineticAlign::left}, {"center", KineticAlign::center}, {"right", KineticAlign::right}});

constexpr auto kReveals = wordsOf<KineticReveal>(
    Spelling::exact,
    {{"character", KineticReveal::character}, {"word", KineticReveal::word}, {"none", KineticReveal::none}});

constexpr NamedValue<KineticAnimation> kAnimationNames[] = {
    {"none", KineticAnimation::none},       {"wave", KineticAnimation::wave},
    {"punch", KineticAnimation::punch},     {"typeon", KineticAnimation::typeOn},
    {"explode", KineticAnimation::explode}, {"scramble", KineticAnimation::scramble},
};
constexpr auto kAnimations = wordsOf(Spelling::exact, kAnimationNames);

constexpr auto kGlitches = wordsOf<KineticGlitch>(
    Spelling::exact,
    {{"digital", KineticGlitch::digital}, {"vhs", KineticGlitch::vhs}, {"corrupt", KineticGlitch::corrupt}});

constexpr const char* kLongX[] = {"positionX"};
constexpr const char* kLongY[] = {"positionY"};

constexpr KeyOf<Params> kKeys[] = {
    key<&Params::text>("text"),
    key<&Params::fontPath>("fontPath"),
    key<&Params::positionX>("x").also(kLongX),
    key<&Params::positionY>("y").also(kLongY),
    key<&Params::scale>("scale", atLeast(0.01f)),
    key<&Params::tracking>("tracking"),
    key<&Params::lineSpacing>("lineSpacing", atLeast(0.1f)),
    key<&Params::align>("align", kAligns, KineticAlign::left),
    key<&Params::alpha>("alpha", {0.0f, 1.0f}),
    key<&Params::blendMode>("blendMode", kBlendModes, BlendMode::alpha),
    key<&Params::reveal>("revealMode", kReveals, KineticReveal::character),
    key<&Params::animation>("animation", kAnimations, KineticAnimation::none),
    key<&Params::stagger>("stagger", atLeast(0.0f)),
    key<&Params::writeSpeed>("writeSpeed", atLeast(0.01f)),
    key<&Params::waveAmount>("waveAmount"),
    key<&Params::waveSpeed>("waveSpeed"),
    key<&Params::punchAmount>("punchAmount", atLeast(0.0f)),
    key<&Params::punchDecay>("punchDecay", atLeast(0.01f)),
    key<&Params::scrambleDuration>("scrambleDuration", atLeast(0.0f)),
    key<&Params::scrambleRate>("scrambleRate", atLeast(1.0f)),
    key<&Params::explodeAmount>("explodeAmount", atLeast(0.0f)),
    key<&Params::explodeSpeed>("explodeSpeed", atLeast(0.01f)),
    key<&Params::explodeSpin>("explodeSpin"),
    key<&Params::explodeFade>("explodeFade", {0.0f, 1.0f}),
    key<&Params::glowEnabled>("outlineGlowEnabled"),
    key<&Params::glowIntensity>("outlineGlowIntensity", atLeast(0.0f)),
    key<&Params::glowRadius>("outlineGlowRadius", atLeast(0.0f)),
    key<&Params::glowColor>("outlineGlowColor").whole(),
    key<&Params::glitchEnabled>("glitchEnabled"),
    key<&Params::glitch>("glitchStyle", kGlitches, KineticGlitch::digital),
    key<&Params::glitchAmount>("glitchAmount", atLeast(0.0f)),
    key<&Params::glitchJitter>("glitchJitter", atLeast(0.0f)),
    key<&Params::glitchFlicker>("glitchFlicker", {0.0f, 1.0f}),
    key<&Params::glitchRate>("glitchRate", atLeast(0.1f)),
};

// The pair that "x" and "y" come before.
void readPosition(const JsonValue& pair, Params& params, const Reading& at) {
    float* const axes[] = {&params.positionX, &params.positionY};
    for (size_t i = 0; i < std::size(axes) && i < pair.items.size(); ++i) {
        readNumber(pair.items[i], {}, *axes[i], at, "position", static_cast<int>(i));
    }
}

// Breaks lines where the text says so and cuts what is too long.
void prepareText(Params& params, const Reading& at) {
    std::string& text = params.text;
    size_t length = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool breaksLine = text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n';
        text[length++] = breaksLine ? '\n' : text[i];
        if (breaksLine) ++i;
    }
    if (length > kKineticMaxBytes) {
        noteOddity(at, "text", OddKind::tooLong);
        params.uncutBytes = length;
        length = kKineticMaxBytes;
    }
    text.resize(length);
    text.shrink_to_fit();
    if (text.empty()) text = kTextForEmpty;
}

} // namespace

KineticTextParams parseKineticTextParams(const JsonValue& json, const Reading& at) {
    KineticTextParams params;
    readPosition(find(json, "position"), params, at);
    readKeys(json, kKeys, params, at);
    prepareText(params, at);
    return params;
}
