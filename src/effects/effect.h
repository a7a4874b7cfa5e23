// The record that renders one entry of the timeline, and the handful of operations on it.
#pragma once

#include "config/runtime_config.h"
#include "effects/transition.h"
#include "gpu/blending.h"
#include "gpu/render_target.h"
#include "gpu/shader_lookup.h"
#include "gpu/uniforms.h"
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
    BlendParams blend;
    std::vector<BlendStep> steps; // one a child
    float stepsEnd = 0.0f;        // seconds, of the last one to end
    bool loopSteps = true;
    SplitParams split;
    SplitUniforms splitUniforms;
    PipParams pip;
    ChannelBinding pipImage; // belongs to the texture cache; no texture where the inset is a child

    // The effect's own clock, advanced only while it is drawn.
    float localTime = 0.0f; // seconds
    int frameCounter = 0;
};

// Never passed to GL.
constexpr GLuint kPlaceholderProgram = ~0u;

// Turns an entry of the show into the effect of its kind. Needs a current context. Failures are in the log; a failed
// effect is not runnable and has nothing to release.
Effect createEffect(const TimelineEntry& entry, const RuntimeConfig& show);

// Where the shaders of an entry without children lie.
ShaderPaths shaderPathsOf(const TimelineEntry& entry, const RuntimeConfig& show);

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
