// Mixes two pictures by one of fifteen transition styles, all in one shader of the show's.
#pragma once

#include "foundation/json.h"
#include "gpu/device.h"
#include "gpu/draw.h"
#include "gpu/uniform_values.h"

#include <array>
#include <string>

// A style with its parameters, as the shader gets them.
struct TransitionLook {
    int effectId = 0;        // style code
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

enum class TransitionUniform {
    texA,
    texB,
    progress,
    startDelay,
    effectId,
    softness,
    bands,
    rotationDeg,
    blockSizePx,
    noiseScale,
    noiseSpeed,
    noiseThreshold,
    waveAmplitude,
    dotFrequency,
    dotPower,
    screenSize,
    count
};

// The program of the transition shader, with its uniforms resolved.
struct TransitionRenderer {
    Program* program = nullptr; // the device's; null: not available
    UniformValues values;
    std::array<UniformInfo, static_cast<size_t>(TransitionUniform::count)> uniforms;
};

// The code of a style's name (any letter case); 0, a fade, for one that is not known.
int transitionStyleCode(const std::string& name);

// The style with its parameters from `params`; what is missing or no number keeps its default.
TransitionLook readTransitionLook(const std::string& style, const JsonValue& params);

// Finds and builds the show's transition shader and says how that went; false when there is none.
bool initTransitionRenderer(Device& device, TransitionRenderer& renderer, const std::string& baseDir);

// The same for an effect that mixes its children: only the driver's errors are logged, under `label`.
bool createTransitionRenderer(Device& device, TransitionRenderer& renderer, const std::string& baseDir,
                              const std::string& label);

// Mixes texture `from` into `to` at a progress of 0 to 1 (clamped), over the whole of the draw's target, unblended.
void renderTransition(const Device& device, const TransitionRenderer& renderer, const Draw& draw, GLuint from,
                      GLuint to, float progress, const TransitionLook& look);
