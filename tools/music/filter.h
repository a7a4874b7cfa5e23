// What voices and the mix share: a filter.
#pragma once

#include "song.h"

#include <algorithm>

// State-variable filter in its trapezoidal form: stable while its cutoff moves at audio speed.
struct Filter {
    double g = 0.0, k = 1.0, s1 = 0.0, s2 = 0.0, low = 0.0, band = 0.0, high = 0.0;
    void tune(double hz, double resonance) { // resonance 0..1
        g = std::tan(kTau * 0.5 * std::clamp(hz, 15.0, 19000.0) / kRate);
        k = 2.0 - 1.9 * resonance;
    }
    void feed(double x) {
        double a = 1.0 / (1.0 + g * (g + k)), v3 = x - s2;
        band = a * s1 + g * a * v3;
        low = s2 + g * band;
        high = x - k * band - low;
        s1 = 2.0 * band - s1;
        s2 = 2.0 * low - s2;
    }
};
