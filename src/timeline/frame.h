// Draws one frame from what plays: base, then overlays by layer, each blended as its entry says.
#pragma once

#include "timeline/playback.h"

// Advances the effect's clock by the frame delta (seconds) and draws it into the current target.
void drawEffect(Effect& effect, float delta, int width, int height);

// The base with blending off, then the overlays over it.
void drawTimelineFrame(const PlayState& state, float delta, int width, int height);

// Every entry of the loaded scene that plays `sceneTime` seconds into it, in the order of the list; both
// ends of an entry's time count as playing.
void drawSceneFrame(Timeline& timeline, float sceneTime, float delta, int width, int height);
