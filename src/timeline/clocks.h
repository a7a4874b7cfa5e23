// The clocks of entries: each runs only in the frames in which its entry is drawn.
#pragma once

#include "timeline/timeline.h"

#include <cstdint>
#include <vector>

// In a window the clock is a sum of frame deltas. While a show is rendered nothing is summed: the frames in which the
// entry was drawn are counted, each 1 / rate long but for the run's first, so that a clock is a function of the show,
// the rate and the frame.
struct EntryClock {
    double origin = 0.0; // seconds on the clock when the counting began: 0, or where a seek put it
    double passed = 0.0; // seconds drawn since, by the real clock; its time scale is not in it
    int64_t steps = 0;   // frames drawn since, rendering
    int frame = 0;       // the entry's frame counter
};

struct Clocks {
    double rate = 0.0;               // frames a second of a rendering; 0: the real clock
    std::vector<EntryClock> entries; // as in the timeline
};

// All at 0.
void resetClocks(Clocks& clocks, const Timeline& timeline);

// Sets a clock as if its entry had been drawn from its start on: `seconds` since then (negative ones count as none),
// at 60 frames a second.
void seekClock(EntryClock& clock, float timeScale, float seconds);

// Lets a frame of `delta` seconds pass, in which the entry is drawn. A rendering looks only at whether it is 0.
void advanceClock(EntryClock& clock, const Clocks& clocks, float delta);

// Seconds on the clock.
double clockTime(const EntryClock& clock, const Clocks& clocks, float timeScale);
