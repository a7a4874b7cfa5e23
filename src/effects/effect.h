// The record that renders one entry of the timeline, and the handful of operations on it.
#pragma once

#include "config/timeline_entry.h"
#include "effects/transition.h"
#include "gpu/device.h"
#include "gpu/draw.h"
#include "gpu/uniform_values.h"
#include "text/bitmap_text.h"
#include "text/caption.h"
#include "text/kinetic_text.h"
#include "text/shape_text.h"

#include <array>
#include <memory>
#include <string>
#include <vector>

enum class EffectKind {
    none,          // default state: draws nothing
    image,         // the built-in image shader
    shader,        // a full-screen shader, with or without a buffer pass
    bitmapText,    // text out of the bitmap font, drawn by its shader
    kineticText,   // moving text of a colour font
    caption,       // a lower third or a credit roll
    shapeText,     // a vector logo
    blend,         // two children, one mixed into the other
    timelineBlend, // children one after the other, mixed where they overlap
    chain,         // a child's picture handed to another child
    dynamicSplit,  // two children on either side of a moving edge
    pip,           // a child with an inset image or child
};

// How an image fills the output.
enum class FitMode {
    stretch, // whole output, aspect ignored
    contain, // whole image, bars transparent
    cover,   // whole output, image cropped
};

enum class PipCorner { bottomRight, bottomLeft, topRight, topLeft };

// When a blend mixes, on its own clock.
struct BlendBlock {
    float startTime = 0.0f;     // seconds
    float blendDuration = 5.0f; // seconds, at least 0.01
};

// When each child of a timeline blend plays, on the blend's clock.
struct BlendStep {
    float start = 0.0f;    // seconds
    float duration = 1.0f; // seconds, at least 0.001
};

struct SplitBlock {
    int mode = 0; // 0 vertical edge, 1 horizontal, 2 diagonal, 3 wave
    float speed = 1.0f;
    float amplitude = 0.2f;   // 0..1
    float position = 0.5f;    // 0..1
    float feather = 0.03f;    // 0.0001..0.5
    float angle = 0.7853982f; // radians
    float waveFrequency = 5.0f;
    bool invert = false;
};

// Of a split's program, resolved when it is made.
struct SplitUniforms {
    UniformInfo position, amplitude, speed, angle, waveFrequency, feather, mode, invert;
};

struct PipBlock {
    float scale = 0.25f; // of the output, 0.05..1
    int margin = 16;     // pixels
    float alpha = 1.0f;  // 0..1
    float delay = 0.0f;  // seconds
    float fadeIn = 0.0f; // seconds
    PipCorner corner = PipCorner::bottomRight;
    ChannelBinding image; // belongs to the texture cache; no texture where the inset is a child
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
    BlendBlock blend;
    std::vector<BlendStep> steps; // one a child
    float stepsEnd = 0.0f;        // seconds, of the last one to end
    bool loopSteps = true;
    SplitBlock split;
    SplitUniforms splitUniforms;
    PipBlock pip;
};

// What effects are made with.
struct Materials {
    Device& device;
    Fonts& fonts;
    int width = 1; // pixels of the output that they will be drawn for
    int height = 1;
};

// Turns an entry into the effect of the kind that its type selects. Needs a current context. Failures are
// in the log; a failed effect is not runnable and has nothing to release.
Effect createEffect(const Materials& materials, const TimelineEntry& entry);

bool isRunnable(const Effect& effect);
bool hasBuffer(const Effect& effect);

// Deletes every GL object that the effect owns, its children included, and resets the record to its default
// state, so that releasing twice is harmless.
void releaseEffect(Effect& effect);

// Draws all passes of the effect into the draw's target. What is current besides is left as the last pass had it.
void drawEffect(Device& device, Effect& effect, const Draw& draw);

// Empties the pictures of every buffer pass, those of children included, as before the first frame.
void clearFeedback(Effect& effect);
