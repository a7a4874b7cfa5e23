// One thing that plays on the timeline, as the show describes it, with the effects within it.
#pragma once

#include "config/bitmap_text_params.h"
#include "config/blend_mode.h"
#include "config/caption_params.h"
#include "config/composite_params.h"
#include "config/effect_kind.h"
#include "config/glitch_params.h"
#include "config/image_params.h"
#include "config/kinetic_params.h"
#include "config/shader_params.h"
#include "config/shape_text_params.h"

#include <array>
#include <string>
#include <variant>
#include <vector>

constexpr int kChannelCount = 4;

// Effects within effects, the outermost not counted; what lies deeper is left out.
constexpr int kMaxNesting = 16;

// Whether the place of an effect within another one holds something that can be made.
enum class Presence {
    described,
    missing, // the show's fallback image stands in its place
    tooDeep, // within more than kMaxNesting others: not read
};

// What "params" says to the kind of effect alone that the type selects; nothing for kinds without keys of their own.
using KindParams =
    std::variant<std::monostate, ImageParams, GlitchParams, BitmapTextParams, KineticTextParams, CaptionParams,
                 ShapeTextParams, BlendParams, TimelineBlendParams, SplitParams, PipParams>;

struct TimelineEntry {
    std::string id;
    std::string type;      // as written
    std::string scene;     // empty: belongs to no scene
    float start = 0.0f;    // seconds on the timeline
    float delay = 0.0f;    // seconds into the scene; scene-list shows only
    float duration = 5.0f; // seconds; 0 or less is open-ended
    bool overlay = false;
    bool enabled = true;
    int layer = 0; // stacking order among overlays, ascending
    float alpha = 1.0f;
    float timeScale = 1.0f;
    float outerTimeScale = 1.0f; // product of the time scales of the effects around this one
    BlendMode blendMode = BlendMode::alpha;
    int depth = 0; // effects around this one: 0 on the timeline itself
    Presence presence = Presence::described;
    std::array<std::string, kChannelCount> channels; // resolved image paths; empty when unbound
    EffectKind kind = EffectKind::shader;
    KindParams params;
    std::vector<ShaderParam> shaderParams; // of kinds that are drawn by a shader of their own

    // Of composites: source and target of a blend, source and post effect of a chain, a and b of a split, main and
    // inset of a picture in picture, the effects of a timeline blend's steps. None where what is required is missing.
    std::vector<TimelineEntry> children;
};

// What the entry's params say to its kind; the defaults for an entry of another kind.
template <class Params>
const Params& paramsOf(const TimelineEntry& entry) {
    static const Params kDefaults;
    const Params* params = std::get_if<Params>(&entry.params);
    return params ? *params : kDefaults;
}

// Reads one element of an "entries" array, with all effects within it. Never fails: what is missing or of the wrong
// kind (a number that is not finite included) takes its default.
TimelineEntry parseTimelineEntry(const JsonValue& json, const Reading& at = {});

// The entry of a nested effect, named parent id + "_" + suffix: scene, start, duration and layer are the
// parent's whatever `json` says, the rest is read from `json`.
TimelineEntry deriveChildEntry(const JsonValue& json, const TimelineEntry& parent, const std::string& suffix,
                               const Reading& at = {});

// The entry's length in seconds on its effect's clock; 0 where it has no end, or its clock never comes there.
float clockLength(const TimelineEntry& entry);
