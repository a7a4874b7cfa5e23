// Blending for the draws that follow.
#pragma once

#include "config/blend_mode.h"

void setBlending(BlendMode mode);
