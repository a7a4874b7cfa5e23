// Random numbers that are the same in every frame: a hash of a seed.
#pragma once

#include <cstdint>

// Factors of a glyph's seed: its characters, its words, and the steps of what changes in steps.
constexpr uint32_t kCharSeed = 0x16a95u;
constexpr uint32_t kWordSeed = 0x10d35u;
constexpr uint32_t kStepSeed = 0x4ebu;

// 0 to 1.
inline float hash01(uint32_t n) {
    n ^= n >> 16;
    n *= 0x7feb352du;
    n ^= n >> 15;
    n *= 0x846ca68bu;
    n ^= n >> 16;
    return static_cast<float>(n) * 2.3283064e-10f;
}

// -1 to 1.
inline float hashSigned(uint32_t n) {
    return 2.0f * hash01(n) - 1.0f;
}

// -1 or 1.
inline float hashSign(uint32_t n) {
    return hash01(n) < 0.5f ? -1.0f : 1.0f;
}

// Rounded down; beyond the range of int its ends, for NaN 0.
inline int floorToInt(float value) {
    if (!(value == value)) return 0;
    if (value >= 2147483648.0f) return 2147483647;
    if (value < -2147483648.0f) return -2147483647 - 1;
    const int truncated = static_cast<int>(value);
    return truncated - (static_cast<float>(truncated) > value ? 1 : 0);
}
