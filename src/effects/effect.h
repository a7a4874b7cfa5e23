// The record that renders one entry of the timeline, and the handful of operations on it.
#pragma once

#include "config/runtime_config.h"
#include "effects/transition.h"
#include "gpu/device.h"
#include "gpu/draw.h"
#include "gpu/shader_lookup.h"
#include "gpu/uniform_values.h"
#include "text/bitmap_text.h"
#include "text/caption.h"
#include "text/kinetic_text.h"
#include "text/shape_text.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

// Of a split's program, resolved when it is made.
struct SplitUniforms {
    UniformInfo position, amplitude, speed, angle, waveFrequency, feather, mode, invert;
};

// One pass's program with the values that the effect gives it.
struct EffectProgram {
    Program* program = nullptr; // the device's; null: none
    UniformValues values;
};

struct Effect {
    EffectKind kind = EffectKind::none; // none: not runnable
    std::string type;                   // lower case
    float alpha = 1.0f;
    float timeScale = 1.0f;
    BlendMode blendMode = BlendMode::alpha;

    EffectProgram main;
    EffectProgram buffer; // a pass before the main one, where there is a program
    EffectProgram blit;   // shows a child's picture
    Channels channels;    // textures belong to the device
    FitMode fit = FitMode::stretch;

    // Of these only the one of the effect's kind is used.
    BitmapText bitmapText;
    KineticText kineticText;
    Caption caption;
    ShapeText shapeText;

    // The buffer pass draws into one while it samples the other, the picture of the frame before.
    std::array<RenderTarget, 2> bufferTargets;
    int bufferFront = 0; // index of the latest picture

    // Composites: their children, and targets for those that are drawn at the same time.
    std::vector<std::unique_ptr<Effect>> children;
    std::array<RenderTarget, 2> childTargets;
    TransitionRenderer mixer;
    TransitionLook mixLook;
    BlendParams blend;
    std::vector<BlendStep> steps; // one a child
    float stepsEnd = 0.0f;        // seconds, of the last one to end
    bool loopSteps = true;
    SplitParams split;
    SplitUniforms splitUniforms;
    PipParams pip;
    ChannelBinding pipImage; // the device's; no texture where the inset is a child
};

// What effects are made with.
struct Materials {
    Device& device;
    Fonts& fonts;
    const RuntimeConfig& show;
    int width = 1; // pixels of the output that they will be drawn for
    int height = 1;
};

// Turns an entry of the show into the effect of its kind. Needs a current context. Failures are in the log; a failed
// effect is not runnable and has nothing to release.
Effect createEffect(const Materials& materials, const TimelineEntry& entry);

// Where the shaders of an entry without children lie.
ShaderPaths shaderPathsOf(const TimelineEntry& entry, const RuntimeConfig& show);

bool isRunnable(const Effect& effect);
bool hasBuffer(const Effect& effect);

// Deletes every GL object that the effect owns, its children included, and resets the record to its default
// state, so that releasing twice is harmless.
void releaseEffect(Effect& effect);

// Draws all passes of the effect into the draw's target. What is current besides is left as the last pass had it.
void drawEffect(Device& device, Effect& effect, const Draw& draw);

// Empties the pictures of every buffer pass, those of children included, as before the first frame.
void clearFeedback(Effect& effect);
