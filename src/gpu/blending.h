// How a picture is mixed into what lies below it.
#pragma once

#include "config/blend_mode.h"

// Turns blending on with the mode's factors.
void setBlending(BlendMode mode);
