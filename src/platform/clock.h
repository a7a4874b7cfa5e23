// The high-resolution counter, and waiting by it. Nothing in a show reads it but the main loop's clock; progress
// lines do.
#pragma once

#include <cstdint>

int64_t clockCounter();
int64_t clockFrequency(); // counts per second

// Sleeps until the counter is there, to a fraction of a millisecond where the system can; not at all if it has passed.
// A signal may end the sleep early.
void sleepUntil(int64_t counter);
