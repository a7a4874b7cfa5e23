// What a show says of a glitch: its style, each a shader of its own.
#pragma once

#include "config/keys.h"

constexpr int kPlainGlitch = -1; // of every style that is not known, and of none

struct GlitchParams {
    int style = kPlainGlitch; // place in the table of styles
};

GlitchParams readGlitchParams(const JsonValue& params, const Reading& at = {});

// Base name of a style's shader files.
const char* glitchShaderName(int style);
