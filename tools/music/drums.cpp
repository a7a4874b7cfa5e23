// The unpitched instruments.
#include "filter.h"
#include "synthesizer.h"

#include <algorithm>

// The modes of a bar that nothing holds lie at these ratios.
void addSteel(Song& song, double start, double hz, double velocity, double ring, double pan) {
    constexpr double kRatio[] = {1.0, 2.756, 5.404, 8.933, 13.34};
    constexpr double kLevel[] = {0.7, 1.0, 0.65, 0.4, 0.2};
    int first = frameOf(start), count = frameOf(ring * 4.0);
    for (int i = 0; i < count; ++i) {
        double t = static_cast<double>(i) / kRate, fade = 1.0 - static_cast<double>(i) / count;
        for (double side : {-1.0, 1.0}) {
            double sum = 0.0;
            for (int m = 0; m < 5; ++m) {
                double mode = hz * kRatio[m] * (1.0 + 0.0013 * side * (m + 1));
                if (mode < 17000.0) {
                    double fading = std::exp(-t * std::pow(kRatio[m], 0.6) / ring);
                    sum += kLevel[m] * fading * std::sin(kTau * mode * t);
                }
            }
            double level = 0.22 * velocity * std::min(1.0, t / 0.0008) * fade;
            mixIn(song.parts[kSteel], first + i, level * sum, pan + 0.4 * side);
        }
    }
}

void addDrop(Song& song, PartId id, double start, double velocity, double fromHz, double toHz, double fall,
             double ring) {
    int first = frameOf(start), count = frameOf(ring * 6.0);
    double phase = 0.0;
    for (int i = 0; i < count; ++i) {
        double t = static_cast<double>(i) / kRate, fade = 1.0 - static_cast<double>(i) / count;
        mixIn(song.parts[id], first + i, velocity * std::exp(-t / ring) * fade * std::sin(kTau * phase), 0.0);
        phase += (toHz + (fromHz - toHz) * std::exp(-t / fall)) / kRate;
    }
}

void addBurst(Song& song, PartId id, const Burst& burst) {
    int first = frameOf(burst.start), count = frameOf(burst.length);
    Noise noise{static_cast<uint32_t>(first * 31 + static_cast<int>(burst.fromHz) + 77)};
    Filter filters[3]; // middle, left, right
    for (int i = 0; i < count; ++i) {
        double t = static_cast<double>(i) / kRate, u = static_cast<double>(i) / count;
        double rise = std::min(1.0, t / burst.swell);
        double level = burst.level * rise * rise * std::exp(-std::max(0.0, t - burst.swell) / burst.decay) *
                       std::min(1.0, (1.0 - u) * 20.0);
        double out[3];
        for (int f = 0; f < 3; ++f) {
            if (i % 16 == 0) {
                filters[f].tune(burst.fromHz * std::pow(burst.toHz / burst.fromHz, u), burst.resonance);
            }
            filters[f].feed(noise.next());
            out[f] = burst.band == Band::low    ? filters[f].low
                     : burst.band == Band::band ? filters[f].band
                                                : filters[f].high;
        }
        double pan = burst.fromPan + (burst.toPan - burst.fromPan) * u;
        mixIn(song.parts[id], first + i, level * out[0] * (1.0 - 0.5 * burst.width), pan);
        mixIn(song.parts[id], first + i, level * out[1] * burst.width * 0.7, pan - 0.9);
        mixIn(song.parts[id], first + i, level * out[2] * burst.width * 0.7, pan + 0.9);
    }
}

void hit(Song& song, Drum drum, double t, double v) {
    switch (drum) {
    case Drum::kick:
        song.kicks.push_back(t);
        addDrop(song, kKick, t, 0.85 * v, 210.0, 49.0, 0.028, 0.13);
        addBurst(song, kKick,
                 {.start = t,
                  .length = 0.012,
                  .level = 0.35 * v,
                  .swell = 0.0002,
                  .decay = 0.003,
                  .fromHz = 2600.0,
                  .toHz = 1800.0,
                  .band = Band::band});
        break;
    case Drum::soft: // a kick heard through a wall
        song.kicks.push_back(t);
        addDrop(song, kKick, t, 0.6 * v, 95.0, 46.0, 0.03, 0.11);
        break;
    case Drum::snare:
        addDrop(song, kDrums, t, 0.42 * v, 330.0, 186.0, 0.015, 0.055);
        addBurst(song, kDrums,
                 {.start = t,
                  .length = 0.3,
                  .level = 0.42 * v,
                  .decay = 0.03 + 0.055 * v,
                  .fromHz = 1900.0,
                  .toHz = 1500.0,
                  .resonance = 0.1,
                  .width = 0.6});
        break;
    case Drum::clap:
        for (double late : {0.0, 0.011, 0.021}) {
            addBurst(song, kDrums,
                     {.start = t + late,
                      .length = 0.22,
                      .level = 0.5 * v,
                      .decay = late > 0.02 ? 0.06 : 0.006,
                      .fromHz = 1500.0,
                      .toHz = 1300.0,
                      .resonance = 0.4,
                      .band = Band::band,
                      .width = 0.8});
        }
        break;
    case Drum::hat:
        addBurst(song, kDrums,
                 {.start = t,
                  .length = 0.09,
                  .level = 0.24 * v,
                  .swell = 0.0005,
                  .decay = 0.018,
                  .fromHz = 8500.0,
                  .toHz = 9500.0,
                  .fromPan = 0.22,
                  .toPan = 0.22,
                  .width = 0.2});
        break;
    case Drum::open:
        addBurst(song, kDrums,
                 {.start = t,
                  .length = 0.3,
                  .level = 0.22 * v,
                  .swell = 0.001,
                  .decay = 0.085,
                  .fromHz = 7600.0,
                  .toHz = 7000.0,
                  .fromPan = -0.18,
                  .toPan = -0.18,
                  .width = 0.4});
        break;
    case Drum::tomHigh: addDrop(song, kDrums, t, 0.6 * v, 260.0, 147.0, 0.04, 0.12); break;
    case Drum::tomLow: addDrop(song, kDrums, t, 0.75 * v, 180.0, 98.0, 0.045, 0.16); break;
    case Drum::anvil: addSteel(song, t, 587.33 * 1.5, 0.7 * v, 0.16, -0.1); break;
    case Drum::crash:
        addBurst(song, kDrums,
                 {.start = t,
                  .length = 2.6,
                  .level = 0.3 * v,
                  .swell = 0.002,
                  .decay = 0.55,
                  .fromHz = 5200.0,
                  .toHz = 3600.0,
                  .width = 0.9});
        break;
    }
}
