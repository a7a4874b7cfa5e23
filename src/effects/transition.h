// Mixes two pictures by one of fifteen transition styles, all in one shader of the show's.
#pragma once

#include "config/transition_look.h"
#include "gpu/device.h"
#include "gpu/draw.h"
#include "gpu/uniform_values.h"

#include <array>
#include <string>

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

// Finds and builds the show's transition shader and says how that went; false when there is none.
bool initTransitionRenderer(Device& device, TransitionRenderer& renderer, const std::string& baseDir);

// The same for an effect that mixes its children: only the driver's errors are logged, under `label`.
bool createTransitionRenderer(Device& device, TransitionRenderer& renderer, const std::string& baseDir,
                              const std::string& label);

// Mixes texture `from` into `to` at a progress of 0 to 1 (clamped), over the whole of the draw's target, unblended.
void renderTransition(const Device& device, const TransitionRenderer& renderer, const Draw& draw, GLuint from,
                      GLuint to, float progress, const TransitionLook& look);
