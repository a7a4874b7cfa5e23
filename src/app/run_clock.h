// The clock of a run, real or stepped: the one source of time for everything that is shown.
#pragma once

#include <cstdint>

// Show time is kept in double precision, so that a long show does not drift from its music, and narrowed
// for each frame.
struct RunClock {
    double fps = 0.0;      // frames a second of the stepped clock; 0: the real one
    double pace = 0.0;     // most frames a second by the real clock; 0: whatever shows them sets the pace
    float delta = 0.0f;    // seconds that the current frame adds
    double showTime = 0.0; // seconds
    double elapsed = 0.0;  // seconds, the sum of all deltas
    double jumpTime = 0.0; // stepped: show time at the last jump
    int64_t framesSinceJump = 0;
    int64_t frames = 0; // ticks so far
    int64_t lastCounter = 0;
    int64_t frameDue = 0; // paced: the counter when the current frame was to begin
};

// Begins a run at a show time. Without `fps` the real clock runs from now on; with it the first frame has
// delta 0 and each later one 1 / fps.
RunClock startClock(double showTime, double fps);

// The next frame: takes its delta, at most 0.1 s by the real clock (two frames of a slower pace), and adds it to the
// show time. A stepped frame's time is computed from its number, so that it carries no rounding of the frames before.
void tickClock(RunClock& clock);

// Sleeps until the next frame of the pace is due, but only for a moment at a time, so that the caller can look for a
// stop request: true once it is due.
bool awaitFrame(RunClock& clock);

// Moves the show time; the delta of the frame stays.
void jumpClock(RunClock& clock, double showTime);

// Lets the time since the last tick pass uncounted.
void restartCounter(RunClock& clock);
