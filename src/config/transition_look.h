// What a show says of a transition: one of fifteen styles with its parameters.
#pragma once

#include "config/keys.h"

// A style with its parameters, as the shader gets them.
struct TransitionLook {
    int effectId = 0;        // style code; 0 is a fade
    float startDelay = 0.0f; // share of the progress range that passes first
    float softness = 0.02f;
    int bands = 8;
    float rotationDeg = 0.0f;
    float blockSizePx = 48.0f;
    float noiseScale = 3.0f;
    float noiseSpeed = 1.0f;
    float noiseThreshold = 0.5f;
    float waveAmplitude = 0.1f;
    float dotFrequency = 200.0f;
    float dotPower = 10.0f;
};

// The code of a style's name (any letter case); 0, a fade, for one that is not known.
int transitionStyleCode(std::string_view name);

// A preset of the show's: "type" is its style, "params" has the parameters.
TransitionLook readPresetLook(const JsonValue& preset, const Reading& at = {});

// How a blend mixes: "mixMode" is the style and stands beside its parameters.
TransitionLook readMixLook(const JsonValue& params, const Reading& at = {});
