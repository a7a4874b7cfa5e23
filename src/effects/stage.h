// The stage: what GL holds of a show. It can be thrown away and made anew out of the show.
#pragma once

#include "effects/effect.h"
#include "foundation/log.h"
#include "text/fonts.h"

#include <span>
#include <vector>

// The effects of one list of entries: the flat timeline, or a scene of a list of scenes.
struct StagePart {
    std::vector<const TimelineEntry*> entries; // those that loaded, the configuration's; in its order
    std::vector<Effect> effects;               // owned, one an entry
    LogRecord log;                             // what was said of it, to be said again when it begins anew
};

struct Stage {
    Device device;
    Fonts fonts;
    std::vector<StagePart> parts;

    // Scenes that overlap in time: their mix, and a target for each side.
    TransitionRenderer transition; // without a program scenes cut
    RenderTarget outgoing;
    RenderTarget incoming;
};

// What a load's lines tell of each entry.
enum class LoadWords { times, shaders };

// Makes the effects of entries for an output of width x height pixels. What fails is logged and left out.
void makeEffects(Stage& stage, StagePart& part, const RuntimeConfig& show, std::span<const TimelineEntry> entries,
                 LoadWords words, int width, int height);

// Finds the show's transition shader and makes the targets; false, with a line in the log, when there is no shader.
bool makeTransition(Stage& stage, const std::string& baseDir, int width, int height);

// Begins a part anew: empty feedback, as if its effects had just been made.
void resetEffects(StagePart& part);

// Deletes everything and resets the record.
void releaseStage(Stage& stage);
