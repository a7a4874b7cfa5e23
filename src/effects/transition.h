// Mixes two pictures by one of fifteen transition styles, all in one shader of the show's.
#pragma once

#include "config/transition_look.h"
#include "gpu/uniforms.h"

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

// A program of the transition shader, with its uniforms resolved.
struct TransitionRenderer {
    GLuint program = 0; // borrowed; 0: not available
    std::array<UniformInfo, static_cast<size_t>(TransitionUniform::count)> uniforms;
};

// Finds and builds the show's transition shader and says how that went; false when there is none.
bool initTransitionRenderer(TransitionRenderer& renderer, const std::string& baseDir);

// The same for an effect that mixes its children: only the driver's errors are logged, under `label`.
bool createTransitionRenderer(TransitionRenderer& renderer, const std::string& baseDir, const std::string& label);

// Gives the program back; harmless when there is none.
void releaseTransitionRenderer(TransitionRenderer& renderer);

// Mixes texture `from` into `to` at a progress of 0 to 1 (clamped), over the whole of a framebuffer of
// width x height pixels. Leaves blending and depth test off.
void renderTransition(const TransitionRenderer& renderer, GLuint framebuffer, int width, int height, GLuint from,
                      GLuint to, float progress, const TransitionLook& look);
