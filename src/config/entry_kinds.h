// What "params" says to one kind of effect alone, the effects within it included.
#pragma once

#include "config/timeline_entry.h"

// Fills in the entry's params, shader params and children by its kind; the rest of the entry is read.
void readKindParams(TimelineEntry& entry, const JsonValue& params, const Reading& at);
