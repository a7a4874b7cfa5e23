// The record that renders one entry of the timeline, and the handful of operations on it.
#pragma once

#include "foundation/json.h"
#include "gpu/render_target.h"
#include "gpu/uniforms.h"

#include <array>
#include <string>

enum class EffectKind {
    none,   // default state: draws nothing
    image,  // the built-in image shader
    shader, // a full-screen shader, with or without a buffer pass
};

// How an image fills the output.
enum class FitMode {
    stretch, // whole output, aspect ignored
    contain, // whole image, bars transparent
    cover,   // whole output, image cropped
};

enum class BlendMode { alpha, additive };

struct Effect {
    EffectKind kind = EffectKind::none;
    std::string id;
    std::string type; // lower case
    float alpha = 1.0f;
    float timeScale = 1.0f;
    float duration = 5.0f; // seconds
    BlendMode blendMode = BlendMode::alpha;
    JsonValue params;

    GLuint mainProgram = 0;      // 0: not runnable
    bool borrowsPrograms = true; // both programs belong to the pool; false: to the effect
    GLuint bufferProgram = 0;
    bool hasBuffer = false; // a buffer pass runs before the main pass
    Channels channels;      // textures belong to the cache
    FitMode fit = FitMode::stretch;
    bool isDreamEntity = false;

    // The buffer pass draws into one while it samples the other, the picture of the frame before.
    std::array<RenderTarget, 2> bufferTargets;
    int bufferFront = 0; // index of the latest picture

    // The effect's own clock, advanced only while it is drawn.
    float localTime = 0.0f; // seconds
    int frameCounter = 0;
};

bool isRunnable(const Effect& effect);

// Gives programs back, deletes every GL object that the effect owns and resets the record to its default
// state, so that releasing twice is harmless.
void releaseEffect(Effect& effect);

// Sets the effect's clock as if it had been drawn from its start on: `seconds` since then, at 60 frames
// a second. Negative seconds count as none.
void seekEffect(Effect& effect, float seconds);

// Lets the frame delta pass on the effect's clock: seconds times its time scale, and one frame.
void advanceEffect(Effect& effect, float delta);
