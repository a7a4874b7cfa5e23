#include "text/kinetic_glitch.h"

#include "text/kinetic_random.h"

#include <algorithm>

namespace {

// The lots of a glyph lie at fixed distances from its seed.
GlitchOffset digitalOffset(const GlitchFrame& frame, uint32_t seed) {
    GlitchOffset offset;
    if (hash01(seed + 0xb) > frame.hitChance) return offset;
    offset.x = hashSigned(seed + 0x11) * frame.amplitude;
    offset.y = hashSigned(seed + 0x1f) * frame.amplitude * 0.25f;
    offset.alpha = 1.0f - hash01(seed + 0x47) * frame.dimming;
    offset.u = hashSigned(seed + 0x2f) * frame.shiftU;
    offset.v = hashSigned(seed + 0x3b) * frame.shiftV;
    if (hash01(seed + 0x61) > frame.strongAbove) {
        offset.x += hashSign(seed + 0x65) * frame.amplitude * 1.5f;
        offset.alpha *= 0.8f;
    }
    offset.alpha = std::clamp(offset.alpha, 0.18f, 1.0f);
    return offset;
}

GlitchOffset corruptOffset(const GlitchFrame& frame, uint32_t seed) {
    GlitchOffset offset;
    if (hash01(seed + 7) > frame.hitChance) return offset;
    offset.x = hashSigned(seed + 0x11) * frame.amplitude * 1.25f;
    offset.y = hashSigned(seed + 0x1f) * frame.amplitude * 0.65f;
    offset.alpha = 1.0f - hash01(seed + 0x47) * frame.dimming;
    offset.u = hashSigned(seed + 0x2f) * frame.shiftU;
    offset.v = hashSigned(seed + 0x3b) * frame.shiftV;
    if (hash01(seed + 0x71) > frame.strongAbove) {
        offset.x += hashSign(seed + 0x7f) * frame.amplitude * 2.4f;
        offset.y += hashSigned(seed + 0x83) * frame.amplitude * 0.9f;
        offset.v *= 1.6f;
        offset.alpha *= 0.62f;
    }
    offset.alpha = std::clamp(offset.alpha, 0.12f, 1.0f);
    return offset;
}

// Six neighbours share a band: whether it is hit, which way, and how hard.
GlitchOffset vhsOffset(const GlitchFrame& frame, const KineticGlyph& glyph, uint32_t seed) {
    const uint32_t band = static_cast<uint32_t>(glyph.charIndex / 6) * 0x4c7u + frame.step * 0x32bu +
                          static_cast<uint32_t>(glyph.wordIndex) * 0x61u;
    GlitchOffset offset;
    if (hash01(band + 5) > frame.hitChance) return offset;
    const float sign = hashSign(band + 0x11);
    offset.x = (hash01(seed + 0x13) * 1.6f + 0.5f) * sign * frame.amplitude;
    offset.y = hashSigned(seed + 0x1f) * frame.amplitude * 0.08f;
    offset.alpha = 1.0f - hash01(seed + 0x47) * frame.dimming;
    offset.u = sign * frame.shiftU;
    offset.v = hashSigned(band + 0x1d) * frame.shiftV;
    if (hash01(band + 0x2b) > frame.strongAbove) {
        offset.x += sign * frame.amplitude * 1.9f;
        offset.u *= 1.75f;
        offset.alpha *= 0.86f;
    }
    offset.alpha = std::clamp(offset.alpha, 0.3f, 1.0f);
    return offset;
}

} // namespace

GlitchFrame glitchFrame(const KineticTextParams& params, const KineticLayout& layout, float time) {
    const float g = std::min(params.glitchAmount, 3.0f);
    const float jitter = params.glitchJitter, flicker = params.glitchFlicker;
    GlitchFrame frame;
    frame.style = params.glitch;
    frame.isOn = params.glitchEnabled && params.glitchAmount > 0.0f;
    frame.step = static_cast<uint32_t>(floorToInt(time * params.glitchRate));
    switch (params.glitch) {
    case KineticGlitch::digital:
        frame.hitChance = std::clamp(g * 0.22f + 0.18f, 0.08f, 0.9f);
        frame.strongAbove = 0.89f - g * 0.08f;
        frame.amplitude = g * jitter;
        frame.dimming = std::clamp(g * flicker * 0.85f, 0.0f, 0.9f);
        frame.shiftU = std::min(g * 0.25f + 0.35f, 1.35f) * layout.texelU;
        frame.shiftV = std::min(g * 0.15f + 0.2f, 0.85f) * layout.texelV;
        break;
    case KineticGlitch::vhs:
        frame.hitChance = std::clamp(g * 0.18f + 0.24f, 0.1f, 0.82f);
        frame.strongAbove = 0.93f - g * 0.05f;
        frame.amplitude = jitter * std::max(g * 1.35f, 0.8f);
        frame.dimming = std::clamp((g * 0.35f + 0.45f) * flicker, 0.0f, 0.7f);
        frame.shiftU = std::min(g * 0.45f + 0.9f, 2.4f) * layout.texelU;
        frame.shiftV = std::min(g * 0.08f + 0.08f, 0.45f) * layout.texelV;
        break;
    case KineticGlitch::corrupt:
        frame.hitChance = std::clamp(g * 0.24f + 0.32f, 0.14f, 0.96f);
        frame.strongAbove = 0.83f - g * 0.08f;
        frame.amplitude = jitter * std::max(g * 1.7f, 1.1f);
        frame.dimming = std::clamp((g * 0.45f + 0.85f) * flicker, 0.0f, 0.98f);
        frame.shiftU = std::min(g * 0.7f + 1.1f, 3.2f) * layout.texelU;
        frame.shiftV = std::min(g * 0.35f + 0.45f, 1.7f) * layout.texelV;
        break;
    }
    return frame;
}

GlitchOffset glitchOffset(const GlitchFrame& frame, const KineticGlyph& glyph) {
    const uint32_t seed = glyph.seed + frame.step * kStepSeed;
    switch (frame.style) {
    case KineticGlitch::digital: return digitalOffset(frame, seed);
    case KineticGlitch::vhs: return vhsOffset(frame, glyph, seed);
    case KineticGlitch::corrupt: return corruptOffset(frame, seed);
    }
    return {};
}
