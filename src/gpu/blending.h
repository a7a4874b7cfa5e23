// How a picture is mixed into what lies below it.
#pragma once

#include <string>

enum class BlendMode {
    alpha,    // source alpha, one minus source alpha
    additive, // source alpha, one
};

// "additive", in this spelling, else alpha.
BlendMode blendModeFrom(const std::string& name);

// Turns blending on with the mode's factors.
void setBlending(BlendMode mode);
