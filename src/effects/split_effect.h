// A dynamic split: two children on either side of an edge that moves.
#pragma once

#include "effects/effect.h"

// Fills in an effect whose identity is set; false, with a line in the log, when it cannot run.
bool createDynamicSplit(const Materials& materials, const TimelineEntry& entry, Effect& effect);

void drawDynamicSplit(Device& device, Effect& effect, const Draw& draw);

// Code of a mode's name, letter case, "-" and "_" aside: 1 horizontal, 2 diagonal, 3 wave, else 0, vertical.
int splitModeCode(const std::string& name);

// The settings of an entry's "params", clamped.
SplitBlock readSplit(const JsonValue& params);
