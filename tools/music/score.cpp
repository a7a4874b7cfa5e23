#include "score.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

int keyOf(const char*& s) { // "Bb3", "C#5", "A4"
    constexpr int kLetter[] = {9, 11, 0, 2, 4, 5, 7};
    int key = kLetter[*s++ - 'A'];
    key += *s == '#' ? 1 : *s == 'b' ? -1 : 0;
    s += *s == '#' || *s == 'b' ? 1 : 0;
    return key + 12 * (*s++ - '0' + 1);
}

} // namespace

void line(Song& song, const Player& player, int bar, const char* s) {
    double step = bar * kSteps, begin = step;
    double total = kSteps * (1.0 + static_cast<double>(std::count(s, s + std::strlen(s), '|')));
    int from = 0, index = 0;
    while (*s) {
        if (*s == ' ' || *s == '|') {
            ++s;
            continue;
        }
        std::vector<int> keys;
        while (*s >= 'A' && *s <= 'G') {
            keys.push_back(keyOf(s) + player.transpose);
            s += *s == '+' ? 1 : 0;
        }
        double accent = *s == '!' ? 1.25 : 1.0;
        s += *s == '-' || *s == '!' ? 1 : 0;
        char* end = nullptr;
        double steps = std::strtod(s + 1, &end);
        s = end;
        double velocity = accent * (player.velocity + player.swell * (step - begin) / total);
        for (int key : keys) {
            Tone tone{.start = step * kStep,
                      .length = steps * kStep * player.gate,
                      .key = 1.0 * key,
                      .from = 1.0 * (from ? from : key),
                      .velocity = velocity,
                      .pan = player.pan + (index % 2 ? -player.sway : player.sway)};
            if (player.ring > 0.0) {
                addBell(song, player.part, tone, player.ring);
            } else {
                addVoice(song, player.part, player.patch, tone);
            }
            song.notes.push_back({step, steps, player.part, key});
            from = key;
        }
        index += keys.empty() ? 0 : 1;
        step += steps;
    }
    if (std::fmod(step, kSteps) != 0.0) {
        std::fprintf(stderr, "bar %d: a line of %.2f steps\n", bar, step - begin);
    }
}

void beat(Song& song, Drum drum, int bar, const char* pattern, double velocity) {
    for (int i = 0; pattern[i]; ++i) {
        double v = pattern[i] == 'X' ? 1.0 : pattern[i] == 'x' ? 0.7 : pattern[i] == 'o' ? 0.4 : 0.0;
        if (v > 0.0) {
            hit(song, drum, at(bar, i), v * velocity);
        }
    }
}

void riser(Song& song, double start, double length, double level) {
    addBurst(song, kAir,
             {.start = start,
              .length = length,
              .level = level,
              .swell = length,
              .decay = 1.0,
              .fromHz = 350.0,
              .toHz = 7000.0,
              .resonance = 0.55,
              .band = Band::band,
              .fromPan = -0.4,
              .toPan = 0.4,
              .width = 0.6});
}

void shing(Song& song, double t, double velocity) {
    addSteel(song, t, 1760.0, 0.4 * velocity, 0.5, 0.2);
    addBurst(song, kAir,
             {.start = t - 0.12,
              .length = 0.5,
              .level = 0.8 * velocity,
              .swell = 0.13,
              .decay = 0.09,
              .fromHz = 3800.0,
              .toHz = 9500.0,
              .resonance = 0.6,
              .band = Band::band,
              .fromPan = -0.7,
              .toPan = 0.7});
}

void embers(Song& song, double start, double length, double from, double to) {
    Noise noise{static_cast<uint32_t>(frameOf(start) + 4242)};
    for (double t = 0.0; t < length; t += 0.012 + 0.05 * (1.0 + noise.next())) {
        double level = from + (to - from) * t / length;
        double size = std::pow(0.5 + 0.5 * noise.next(), 3.0), pan = 0.9 * noise.next();
        double hz = 2200.0 + 2600.0 * (1.0 + noise.next());
        addBurst(song, kAir,
                 {.start = start + t,
                  .length = 0.03,
                  .level = 2.2 * level * size,
                  .swell = 0.0004,
                  .decay = 0.0035,
                  .fromHz = hz,
                  .toHz = 0.7 * hz,
                  .resonance = 0.75,
                  .band = Band::band,
                  .fromPan = pan,
                  .toPan = pan});
    }
    double louder = std::max(from, to);
    addBurst(song, kAir,
             {.start = start,
              .length = length,
              .level = 0.16 * louder,
              .swell = to > from ? length : 0.02,
              .decay = to > from ? 1.0 : length * 0.35,
              .fromHz = 420.0,
              .toHz = 420.0,
              .band = Band::low,
              .width = 0.9});
}
