// How a picture is mixed into what lies below it.
#pragma once

#include <string>

enum class BlendMode {
    opaque,   // not at all: it takes its place
    alpha,    // source alpha, one minus source alpha
    additive, // source alpha, one
};

// "additive", in this spelling, else alpha.
BlendMode blendModeFrom(const std::string& name);

// Sets blending for the draws that follow.
void setBlending(BlendMode mode);
