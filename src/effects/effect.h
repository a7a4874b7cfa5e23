// The record that renders one entry of the timeline, and the handful of operations on it.
#pragma once

#include "config/timeline_entry.h"
#include "effects/transition.h"
#include "gpu/blending.h"
#include "gpu/render_target.h"
#include "gpu/uniforms.h"
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

struct Effect {
    EffectKind kind = EffectKind::none;
    std::string id;
    std::string type; // lower case
    float alpha = 1.0f;
    float timeScale = 1.0f;
    float duration = 5.0f; // seconds
    BlendMode blendMode = BlendMode::alpha;

    // Programs are borrowed from the pool. A kind without a main program of its own has a placeholder in
    // its place, so that it counts as runnable.
    GLuint mainProgram = 0; // 0: not runnable
    GLuint bufferProgram = 0;
    GLuint blitProgram = 0; // shows a child's picture
    bool hasBuffer = false; // a buffer pass runs before the main pass
    Channels channels;      // textures belong to the cache
    FitMode fit = FitMode::stretch;
    bool isDreamEntity = false;

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

    // The effect's own clock, advanced only while it is drawn.
    float localTime = 0.0f; // seconds
    int frameCounter = 0;
};

// Never passed to GL.
constexpr GLuint kPlaceholderProgram = ~0u;

// Turns an entry into the effect of the kind that its type selects. Needs a current context. Failures are
// in the log; a failed effect is not runnable and has nothing to release.
Effect createEffect(const TimelineEntry& entry);

bool isRunnable(const Effect& effect);

// Gives programs back, deletes every GL object that the effect owns, its children included, and resets the
// record to its default state, so that releasing twice is harmless.
void releaseEffect(Effect& effect);

// Draws all passes of the effect at its local time into the current target, `width` x `height` pixels,
// with the blending that is set. `input` (may be null) is the picture of another effect for one of its
// channels. Leaves the viewport over the whole output.
void drawEffectPasses(Effect& effect, int width, int height, const InputTexture* input);

// Empties the pictures of every buffer pass, those of children included, as before the first frame.
void clearFeedback(Effect& effect);

// Sets the effect's clock as if it had been drawn from its start on: `seconds` since then, at 60 frames
// a second. Negative seconds count as none.
void seekEffect(Effect& effect, float seconds);

// Lets the frame delta pass on the effect's clock: seconds times its time scale, and one frame.
void advanceEffect(Effect& effect, float delta);
