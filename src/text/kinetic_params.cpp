#include "text/kinetic_params.h"

#include "foundation/log.h"

namespace {

constexpr const char* kTextForEmpty = "WE ARE THE SIGNAL";

struct FloatKey {
    const char* key;
    float KineticTextParams::*field;
    float low, high;
};

constexpr FloatKey kFloatKeys[] = {
    {"scale", &KineticTextParams::scale, 0.01f, kNoBound},
    {"tracking", &KineticTextParams::tracking, -kNoBound, kNoBound},
    {"lineSpacing", &KineticTextParams::lineSpacing, 0.1f, kNoBound},
    {"alpha", &KineticTextParams::alpha, 0.0f, 1.0f},
    {"stagger", &KineticTextParams::stagger, 0.0f, kNoBound},
    {"writeSpeed", &KineticTextParams::writeSpeed, 0.01f, kNoBound},
    {"waveAmount", &KineticTextParams::waveAmount, -kNoBound, kNoBound},
    {"waveSpeed", &KineticTextParams::waveSpeed, -kNoBound, kNoBound},
    {"punchAmount", &KineticTextParams::punchAmount, 0.0f, kNoBound},
    {"punchDecay", &KineticTextParams::punchDecay, 0.01f, kNoBound},
    {"scrambleDuration", &KineticTextParams::scrambleDuration, 0.0f, kNoBound},
    {"scrambleRate", &KineticTextParams::scrambleRate, 1.0f, kNoBound},
    {"explodeAmount", &KineticTextParams::explodeAmount, 0.0f, kNoBound},
    {"explodeSpeed", &KineticTextParams::explodeSpeed, 0.01f, kNoBound},
    {"explodeSpin", &KineticTextParams::explodeSpin, -kNoBound, kNoBound},
    {"explodeFade", &KineticTextParams::explodeFade, 0.0f, 1.0f},
    {"outlineGlowIntensity", &KineticTextParams::glowIntensity, 0.0f, kNoBound},
    {"outlineGlowRadius", &KineticTextParams::glowRadius, 0.0f, kNoBound},
    {"glitchAmount", &KineticTextParams::glitchAmount, 0.0f, kNoBound},
    {"glitchJitter", &KineticTextParams::glitchJitter, 0.0f, kNoBound},
    {"glitchFlicker", &KineticTextParams::glitchFlicker, 0.0f, 1.0f},
    {"glitchRate", &KineticTextParams::glitchRate, 0.1f, kNoBound},
};

// "x", else "positionX", else the element of "position"; the same for y.
float readPosition(const JsonValue& params, const char* shortKey, const char* longKey, size_t element, float fallback) {
    const std::vector<JsonValue>& pair = find(params, "position").items;
    if (element < pair.size()) fallback = getFinite(pair[element], fallback);
    return getFinite(find(params, shortKey), getFinite(find(params, longKey), fallback));
}

std::string prepareText(std::string text) {
    size_t length = 0;
    for (size_t i = 0; i < text.size(); ++i) {
        const bool breaksLine = text[i] == '\\' && i + 1 < text.size() && text[i + 1] == 'n';
        text[length++] = breaksLine ? '\n' : text[i];
        if (breaksLine) ++i;
    }
    if (length > kKineticMaxBytes) {
        logLine("[KTEXT] Text of %zu bytes cut to %zu\n", length, kKineticMaxBytes);
        length = kKineticMaxBytes;
    }
    text.resize(length);
    text.shrink_to_fit();
    return text.empty() ? kTextForEmpty : text;
}

KineticAlign alignFrom(const std::string& name) {
    if (name == "right") return KineticAlign::right;
    return name == "center" ? KineticAlign::center : KineticAlign::left;
}

KineticReveal revealFrom(const std::string& name) {
    if (name == "word") return KineticReveal::word;
    return name == "none" ? KineticReveal::none : KineticReveal::character;
}

KineticAnimation animationFrom(const std::string& name) {
    constexpr struct {
        const char* name;
        KineticAnimation animation;
    } kNames[] = {
        {"wave", KineticAnimation::wave},         {"punch", KineticAnimation::punch},
        {"typeon", KineticAnimation::typeOn},     {"explode", KineticAnimation::explode},
        {"scramble", KineticAnimation::scramble},
    };
    for (const auto& known : kNames) {
        if (name == known.name) return known.animation;
    }
    return KineticAnimation::none;
}

KineticGlitch glitchFrom(const std::string& name) {
    if (name == "vhs") return KineticGlitch::vhs;
    return name == "corrupt" ? KineticGlitch::corrupt : KineticGlitch::digital;
}

} // namespace

KineticTextParams parseKineticTextParams(const JsonValue& params) {
    KineticTextParams result;
    result.text = prepareText(getString(find(params, "text"), result.text.c_str()));
    result.fontPath = getString(find(params, "fontPath"), result.fontPath.c_str());
    result.positionX = readPosition(params, "x", "positionX", 0, result.positionX);
    result.positionY = readPosition(params, "y", "positionY", 1, result.positionY);
    for (const FloatKey& key : kFloatKeys) {
        float& field = result.*key.field;
        field = getBounded(find(params, key.key), field, key.low, key.high);
    }
    result.align = alignFrom(getString(find(params, "align"), "center"));
    result.blendMode = blendModeFrom(getString(find(params, "blendMode"), "additive"));
    result.reveal = revealFrom(getString(find(params, "revealMode"), "character"));
    result.animation = animationFrom(getString(find(params, "animation"), "wave"));
    result.glowEnabled = getBool(find(params, "outlineGlowEnabled"), result.glowEnabled);
    const std::vector<JsonValue>& color = find(params, "outlineGlowColor").items;
    for (size_t i = 0; i < result.glowColor.size() && color.size() >= result.glowColor.size(); ++i) {
        result.glowColor[i] = getFinite(color[i], result.glowColor[i]);
    }
    result.glitchEnabled = getBool(find(params, "glitchEnabled"), result.glitchEnabled);
    result.glitch = glitchFrom(getString(find(params, "glitchStyle"), "digital"));
    return result;
}
