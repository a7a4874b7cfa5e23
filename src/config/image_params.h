// What a show says of an image.
#pragma once

#include "config/keys.h"

// How an image fills the output.
enum class FitMode {
    stretch, // whole output, aspect ignored
    contain, // whole image, bars transparent
    cover,   // whole output, image cropped
};

struct ImageParams {
    FitMode fit = FitMode::stretch;
};

ImageParams readImageParams(const JsonValue& params, const Reading& at = {});
