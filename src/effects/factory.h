// Turns an entry of the timeline into the effect of the kind that its type selects.
#pragma once

#include "config/timeline_entry.h"
#include "effects/effect.h"

// Needs a current context. Failures are in the log; a failed effect has mainProgram 0 and nothing to
// release.
Effect createEffect(const TimelineEntry& entry);
