// How a picture is mixed into what lies below it, and the words for that.
#pragma once

#include "config/keys.h"

enum class BlendMode {
    opaque,   // not at all: it takes its place; no word says so
    alpha,    // source alpha, one minus source alpha
    additive, // source alpha, one
};

constexpr auto kBlendModes = wordsOf<BlendMode>(Spelling::exact,
                                                {{"alpha", BlendMode::alpha}, {"additive", BlendMode::additive}});
