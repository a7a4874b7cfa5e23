// The high-resolution counter. Nothing in a show reads it but the main loop's clock; progress lines do.
#pragma once

#include <cstdint>

int64_t clockCounter();
int64_t clockFrequency(); // counts per second
