// Makes the showcase's track: a synthesizer, the notes, and a mix of exactly 29 bars that loops without a seam.
//
// To make it again (g++, vorbis-tools):
//   g++ -std=c++20 -O2 -ffp-contract=off tools/make_music.cpp -o build/make_music
//   build/make_music build/quillon.wav
//   oggenc -Q -q 5 --serial 1 --discard-comments -o shows/showcase/assets/music/quillon.ogg build/quillon.wav
//
// make_music [--notes] [--only PART] FILE.wav
//   --notes       lists every pitched note: bar and step of its start, length in steps, part, name
//   --only PART   leaves the other parts out: kick drums steel bass pad arp lead bell air
// Printed: the level of every part in every scene, dB RMS.
//
// Everything is laid on rings of the track's length: a note that sounds past the end goes on at the beginning,
// and whatever has a memory (echo, hall, limiter) goes round twice and keeps the second round.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <numbers>
#include <string>
#include <vector>

namespace {

constexpr int kRate = 44100;
constexpr int kBars = 29;
constexpr int kSteps = 16;            // a bar
constexpr double kStep = 0.125;       // s, at 120 beats a minute
constexpr int kFrames = kBars * 2 * kRate;
constexpr double kTau = 2.0 * std::numbers::pi;

enum PartId { kKick, kDrums, kSteel, kBass, kPad, kArp, kLead, kBell, kAir, kPartCount };

// One instrument group, from its notes to its place in the mix.
struct Part {
    const char* name = "";
    double gain = 0.0;     // dB
    double duck = 0.0;     // how much of it a kick takes away, 0..1
    double hall = 0.0;     // share sent to the reverb
    double echo = 0.0;     // share sent to the ping-pong delay
    double lowCut = 20.0;  // Hz
    std::vector<float> left = {}, right = {};
};

struct NoteEntry {
    double step = 0.0, length = 0.0; // sixteenths from the start of the track
    int part = 0, key = 0;           // key: MIDI number
};

struct Song {
    std::array<Part, kPartCount> parts = {{
        {"kick", -4.5, 0.0, 0.02, 0.0, 28.0},
        {"drums", -3.0, 0.10, 0.14, 0.0, 110.0},
        {"steel", -9.0, 0.10, 0.38, 0.10, 180.0},
        {"bass", -11.0, 0.70, 0.0, 0.0, 32.0},
        {"pad", -12.0, 0.55, 0.30, 0.0, 150.0},
        {"arp", -8.0, 0.45, 0.18, 0.30, 220.0},
        {"lead", -9.0, 0.25, 0.24, 0.24, 190.0},
        {"bell", -11.0, 0.15, 0.42, 0.38, 240.0},
        {"air", -11.5, 0.25, 0.20, 0.0, 200.0},
    }};
    std::vector<NoteEntry> notes;
    std::vector<double> kicks; // s
};

struct Noise {
    uint32_t state = 1;
    double next() { // -1..1
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return static_cast<double>(state) / 2147483648.0 - 1.0;
    }
};

double fromDb(double db) { return std::pow(10.0, db / 20.0); }
double keyToHz(double key) { return 440.0 * std::exp2((key - 69.0) / 12.0); }
double at(int bar, double step) { return (bar * kSteps + step) * kStep; } // s

int frameOf(double seconds) { return static_cast<int>(std::lround(seconds * kRate)); }

// Equal-power panning, -1 left .. 1 right; a centred sound has gain 1 on both sides.
void mixIn(Part& part, int64_t frame, double value, double pan) {
    size_t i = static_cast<size_t>(frame % kFrames);
    double angle = (std::clamp(pan, -1.0, 1.0) + 1.0) * kTau / 8.0;
    part.left[i] += static_cast<float>(value * std::numbers::sqrt2 * std::cos(angle));
    part.right[i] += static_cast<float>(value * std::numbers::sqrt2 * std::sin(angle));
}

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

// ---- Pitched voices ----------------------------------------------------------------

struct Patch {
    double gain = 0.3;
    double saw = 1.0, square = 0.0, sub = 0.0; // oscillator levels; sub is a sine at the note's own pitch
    int unison = 1;
    double detune = 0.0, spread = 0.0;         // cents to either side; stereo width 0..1
    double attack = 0.003, decay = 0.3, sustain = 0.7, release = 0.08; // s, s, level, s
    double cutoff = 1200.0, resonance = 0.1;   // Hz, 0..1
    double bend = 0.0, bendAttack = 0.0, bendDecay = 0.2; // octaves the envelope opens the filter, s, s
    double open = 0.0;                         // octaves it opens from the note's start to its end
    double vibrato = 0.0, glide = 0.0;         // cents; s to come from the note before
    double drive = 0.0;
};

// Band-limited step: what the naive sawtooth needs within one sample of its jump.
double stepCorrection(double phase, double increment) {
    if (phase < increment) {
        double x = phase / increment - 1.0;
        return -x * x;
    }
    if (phase > 1.0 - increment) {
        double x = (phase - 1.0) / increment + 1.0;
        return x * x;
    }
    return 0.0;
}

double sawtooth(double phase, double increment) {
    return 2.0 * phase - 1.0 - stepCorrection(phase, increment);
}

double envelope(const Patch& patch, double t, double length) {
    double held = std::min(t, length);
    double level = held < patch.attack
        ? held / patch.attack
        : patch.sustain + (1.0 - patch.sustain) * std::exp((patch.attack - held) / patch.decay);
    double gone = (t - length) / patch.release;
    return gone > 0.0 ? level * std::exp(-4.0 * gone) * std::max(0.0, 1.0 - gone) : level;
}

double filterHz(const Patch& patch, double t, double length, double hz) {
    double shape = t < patch.bendAttack ? t / patch.bendAttack
                                        : std::exp((patch.bendAttack - t) / patch.bendDecay);
    double octaves = patch.bend * shape + patch.open * std::min(t / length, 1.0) + 0.3 * std::log2(hz / 262.0);
    return patch.cutoff * std::exp2(octaves);
}

struct Tone {
    double start = 0.0, length = 0.0; // s
    double key = 0.0, from = 0.0;     // MIDI; from: where a glide begins
    double velocity = 1.0, pan = 0.0;
};

void addVoice(Song& song, PartId id, const Patch& patch, const Tone& tone) {
    constexpr int kMost = 7, kBlock = 16; // filter and pitch move once a block
    Noise noise{static_cast<uint32_t>(frameOf(tone.start) * 131 + tone.key * 7919 + 1)};
    std::array<double, kMost> phase{}, increment{};
    for (double& p : phase) {
        p = patch.unison > 1 ? 0.5 + 0.5 * noise.next() : 0.5;
    }
    Filter left[2], right[2];
    double subPhase = 0.0, subIncrement = 0.0;
    int first = frameOf(tone.start), count = frameOf(tone.length + patch.release);
    double loud = patch.gain * tone.velocity / std::sqrt(static_cast<double>(patch.unison));
    for (int i = 0; i < count; ++i) {
        double t = static_cast<double>(i) / kRate;
        if (i % kBlock == 0) {
            double glide = patch.glide > 0.0 ? (tone.from - tone.key) * std::exp(-t / patch.glide) : 0.0;
            double wave = patch.vibrato / 100.0 * std::min(1.0, t / 0.5) * std::sin(kTau * 5.3 * t);
            double hz = keyToHz(tone.key + glide + wave);
            for (int u = 0; u < patch.unison; ++u) {
                double place = patch.unison > 1 ? 2.0 * u / (patch.unison - 1) - 1.0 : 0.0;
                increment[u] = hz * std::exp2(place * patch.detune / 1200.0) / kRate;
            }
            subIncrement = hz / kRate;
            for (Filter* filter : {left, right}) {
                double cut = filterHz(patch, t, tone.length, hz) * (0.9 + 0.1 * tone.velocity);
                filter[0].tune(cut, patch.resonance);
                filter[1].tune(cut, 0.3);
            }
        }
        double l = 0.0, r = 0.0;
        for (int u = 0; u < patch.unison; ++u) {
            double v = patch.saw * sawtooth(phase[u], increment[u]);
            if (patch.square > 0.0) {
                double half = phase[u] < 0.5 ? phase[u] + 0.5 : phase[u] - 0.5;
                v += patch.square * (sawtooth(phase[u], increment[u]) - sawtooth(half, increment[u]));
            }
            phase[u] += increment[u];
            phase[u] -= phase[u] >= 1.0 ? 1.0 : 0.0;
            double side = patch.unison > 1 ? (u % 2 ? patch.spread : -patch.spread) : 0.0;
            l += v * (1.0 - side);
            r += v * (1.0 + side);
        }
        double sub = patch.sub * std::sin(kTau * subPhase);
        subPhase += subIncrement - (subPhase >= 1.0 ? 1.0 : 0.0);
        left[0].feed(l);
        left[1].feed(left[0].low);
        right[0].feed(r);
        right[1].feed(right[0].low);
        double level = envelope(patch, t, tone.length) * loud;
        double out[2] = {left[1].low + sub, right[1].low + sub};
        if (patch.drive > 0.0) {
            out[0] = std::tanh(out[0] * (1.0 + patch.drive)) / (1.0 + 0.4 * patch.drive);
            out[1] = std::tanh(out[1] * (1.0 + patch.drive)) / (1.0 + 0.4 * patch.drive);
        }
        mixIn(song.parts[id], first + i, 0.5 * level * (out[0] + out[1]), tone.pan);
        size_t place = static_cast<size_t>((first + i) % kFrames);
        song.parts[id].left[place] += static_cast<float>(0.5 * level * (out[0] - out[1]));
        song.parts[id].right[place] += static_cast<float>(0.5 * level * (out[1] - out[0]));
    }
}

// Glass: one sine bends another's phase, each side a touch apart.
void addBell(Song& song, PartId id, const Tone& tone, double ring) {
    int first = frameOf(tone.start), count = frameOf(ring * 5.0);
    for (int i = 0; i < count; ++i) {
        double t = static_cast<double>(i) / kRate, fade = 1.0 - static_cast<double>(i) / count;
        double level = tone.velocity * 0.3 * std::min(1.0, t / 0.002) * std::exp(-t / ring) * fade;
        for (double side : {-1.0, 1.0}) {
            double hz = keyToHz(tone.key + 0.05 * side);
            double bend = 0.9 * std::exp(-t / (0.35 * ring)) * std::sin(kTau * 2.0 * hz * t)
                        + 0.35 * std::exp(-t / 0.03) * std::sin(kTau * 7.0 * hz * t);
            mixIn(song.parts[id], first + i, 0.7 * level * std::sin(kTau * hz * t + bend), tone.pan + 0.45 * side);
        }
    }
}

// ---- Unpitched sounds --------------------------------------------------------------

// A steel bar struck at its end: the modes of a bar that nothing holds lie at these ratios.
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
                    sum += kLevel[m] * std::exp(-t * std::pow(kRatio[m], 0.6) / ring) * std::sin(kTau * mode * t);
                }
            }
            double level = 0.22 * velocity * std::min(1.0, t / 0.0008) * fade;
            mixIn(song.parts[kSteel], first + i, level * sum, pan + 0.4 * side);
        }
    }
}

// A sine that falls from one pitch to another: the body of kicks, toms and booms.
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

enum class Band { low, band, high };

// A burst of filtered noise; the filter and the place may move over its length.
struct Burst {
    double start = 0.0, length = 0.1; // s
    double level = 0.5;
    double swell = 0.001;             // s from nothing to full
    double decay = 0.05;              // s, after the swell
    double fromHz = 8000.0, toHz = 8000.0, resonance = 0.2;
    Band band = Band::high;
    double fromPan = 0.0, toPan = 0.0, width = 0.0; // width: share of noise that differs between the sides
};

void addBurst(Song& song, PartId id, const Burst& burst) {
    int first = frameOf(burst.start), count = frameOf(burst.length);
    Noise noise{static_cast<uint32_t>(first * 31 + static_cast<int>(burst.fromHz) + 77)};
    Filter filters[3]; // middle, left, right
    for (int i = 0; i < count; ++i) {
        double t = static_cast<double>(i) / kRate, u = static_cast<double>(i) / count;
        double rise = std::min(1.0, t / burst.swell);
        double level = burst.level * rise * rise * std::exp(-std::max(0.0, t - burst.swell) / burst.decay)
                     * std::min(1.0, (1.0 - u) * 20.0);
        double out[3];
        for (int f = 0; f < 3; ++f) {
            if (i % 16 == 0) {
                filters[f].tune(burst.fromHz * std::pow(burst.toHz / burst.fromHz, u), burst.resonance);
            }
            filters[f].feed(noise.next());
            out[f] = burst.band == Band::low ? filters[f].low
                   : burst.band == Band::band ? filters[f].band : filters[f].high;
        }
        double pan = burst.fromPan + (burst.toPan - burst.fromPan) * u;
        mixIn(song.parts[id], first + i, level * out[0] * (1.0 - 0.5 * burst.width), pan);
        mixIn(song.parts[id], first + i, level * out[1] * burst.width * 0.7, pan - 0.9);
        mixIn(song.parts[id], first + i, level * out[2] * burst.width * 0.7, pan + 0.9);
    }
}

enum class Drum { kick, soft, snare, clap, hat, open, tomHigh, tomLow, anvil, crash };

void hit(Song& song, Drum drum, double t, double v) {
    switch (drum) {
    case Drum::kick:
        song.kicks.push_back(t);
        addDrop(song, kKick, t, 0.85 * v, 210.0, 49.0, 0.028, 0.13);
        addBurst(song, kKick, {.start = t, .length = 0.012, .level = 0.35 * v, .swell = 0.0002, .decay = 0.003,
                               .fromHz = 2600.0, .toHz = 1800.0, .band = Band::band});
        break;
    case Drum::soft: // a kick heard through a wall
        song.kicks.push_back(t);
        addDrop(song, kKick, t, 0.6 * v, 95.0, 46.0, 0.03, 0.11);
        break;
    case Drum::snare:
        addDrop(song, kDrums, t, 0.42 * v, 330.0, 186.0, 0.015, 0.055);
        addBurst(song, kDrums, {.start = t, .length = 0.3, .level = 0.42 * v, .decay = 0.03 + 0.055 * v,
                                .fromHz = 1900.0, .toHz = 1500.0, .resonance = 0.1, .width = 0.6});
        break;
    case Drum::clap:
        for (double late : {0.0, 0.011, 0.021}) {
            addBurst(song, kDrums, {.start = t + late, .length = 0.22, .level = 0.5 * v,
                                    .decay = late > 0.02 ? 0.06 : 0.006, .fromHz = 1500.0, .toHz = 1300.0,
                                    .resonance = 0.4, .band = Band::band, .width = 0.8});
        }
        break;
    case Drum::hat:
        addBurst(song, kDrums, {.start = t, .length = 0.09, .level = 0.24 * v, .swell = 0.0005, .decay = 0.018,
                                .fromHz = 8500.0, .toHz = 9500.0, .fromPan = 0.22, .toPan = 0.22, .width = 0.2});
        break;
    case Drum::open:
        addBurst(song, kDrums, {.start = t, .length = 0.3, .level = 0.22 * v, .swell = 0.001, .decay = 0.085,
                                .fromHz = 7600.0, .toHz = 7000.0, .fromPan = -0.18, .toPan = -0.18, .width = 0.4});
        break;
    case Drum::tomHigh:
        addDrop(song, kDrums, t, 0.6 * v, 260.0, 147.0, 0.04, 0.12);
        break;
    case Drum::tomLow:
        addDrop(song, kDrums, t, 0.75 * v, 180.0, 98.0, 0.045, 0.16);
        break;
    case Drum::anvil:
        addSteel(song, t, 587.33 * 1.5, 0.7 * v, 0.16, -0.1);
        break;
    case Drum::crash:
        addBurst(song, kDrums, {.start = t, .length = 2.6, .level = 0.3 * v, .swell = 0.002, .decay = 0.55,
                                .fromHz = 5200.0, .toHz = 3600.0, .width = 0.9});
        break;
    }
}

// ---- Scores ------------------------------------------------------------------------

int keyOf(const char*& s) { // "Bb3", "C#5", "A4"
    constexpr int kLetter[] = {9, 11, 0, 2, 4, 5, 7};
    int key = kLetter[*s++ - 'A'];
    key += *s == '#' ? 1 : *s == 'b' ? -1 : 0;
    s += *s == '#' || *s == 'b' ? 1 : 0;
    return key + 12 * (*s++ - '0' + 1);
}

// How a line is played: the instrument, and what it does to every note.
struct Player {
    PartId part = kLead;
    Patch patch = {};
    double ring = 0.0;      // s; above 0 the note is a bell's
    double velocity = 1.0;
    double gate = 1.0;      // share of its length that a note sounds
    int transpose = 0;
    double pan = 0.0, sway = 0.0; // sway: every second note goes so far to the other side
    double swell = 0.0;     // added to the velocity over each line
};

// A line is "KEY[+KEY...]/STEPS ...", "-" for a rest, "|" between bars for the eye; "!" after a note accents it.
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
            Tone tone{.start = step * kStep, .length = steps * kStep * player.gate, .key = 1.0 * key,
                      .from = 1.0 * (from ? from : key), .velocity = velocity,
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

// Sixteen places a bar: X loud, x middling, o soft.
void beat(Song& song, Drum drum, int bar, const char* pattern, double velocity = 1.0) {
    for (int i = 0; pattern[i]; ++i) {
        double v = pattern[i] == 'X' ? 1.0 : pattern[i] == 'x' ? 0.7 : pattern[i] == 'o' ? 0.4 : 0.0;
        if (v > 0.0) {
            hit(song, drum, at(bar, i), v * velocity);
        }
    }
}

// Noise that climbs for some bars and is gone at the end of the last one.
void riser(Song& song, double start, double length, double level) {
    addBurst(song, kAir, {.start = start, .length = length, .level = level, .swell = length, .decay = 1.0,
                          .fromHz = 350.0, .toHz = 7000.0, .resonance = 0.55, .band = Band::band,
                          .fromPan = -0.4, .toPan = 0.4, .width = 0.6});
}

// A blade drawn past the ear.
void shing(Song& song, double t, double velocity) {
    addSteel(song, t, 1760.0, 0.4 * velocity, 0.5, 0.2);
    addBurst(song, kAir, {.start = t - 0.12, .length = 0.5, .level = 0.8 * velocity, .swell = 0.13, .decay = 0.09,
                          .fromHz = 3800.0, .toHz = 9500.0, .resonance = 0.6, .band = Band::band,
                          .fromPan = -0.7, .toPan = 0.7});
}

// Sparks of a fire: short clicks at times of their own, their density going from one level to another.
void embers(Song& song, double start, double length, double from, double to) {
    Noise noise{static_cast<uint32_t>(frameOf(start) + 4242)};
    for (double t = 0.0; t < length; t += 0.012 + 0.05 * (1.0 + noise.next())) {
        double level = from + (to - from) * t / length;
        double size = std::pow(0.5 + 0.5 * noise.next(), 3.0), pan = 0.9 * noise.next();
        double hz = 2200.0 + 2600.0 * (1.0 + noise.next());
        addBurst(song, kAir, {.start = start + t, .length = 0.03, .level = 2.2 * level * size, .swell = 0.0004,
                              .decay = 0.0035, .fromHz = hz, .toHz = 0.7 * hz, .resonance = 0.75,
                              .band = Band::band, .fromPan = pan, .toPan = pan});
    }
    double louder = std::max(from, to);
    addBurst(song, kAir, {.start = start, .length = length, .level = 0.16 * louder,
                          .swell = to > from ? length : 0.02, .decay = to > from ? 1.0 : length * 0.35,
                          .fromHz = 420.0, .toHz = 420.0, .band = Band::low, .width = 0.9});
}

// ---- Instruments -------------------------------------------------------------------

constexpr Patch kWarmPad{.gain = 0.20, .unison = 7, .detune = 13.0, .spread = 0.9, .attack = 0.35, .decay = 2.0,
                         .sustain = 0.85, .release = 0.9, .cutoff = 1600.0, .open = 0.6};
constexpr Patch kBrass{.gain = 0.24, .unison = 3, .detune = 8.0, .spread = 0.5, .attack = 0.02, .decay = 0.5,
                       .sustain = 0.75, .release = 0.16, .cutoff = 1100.0, .bend = 1.7, .bendAttack = 0.06,
                       .bendDecay = 0.5, .vibrato = 7.0};
constexpr Patch kFlowBass{.gain = 0.42, .saw = 0.7, .square = 0.2, .sub = 0.6, .attack = 0.006, .decay = 0.4,
                          .sustain = 0.75, .release = 0.06, .cutoff = 430.0, .resonance = 0.45, .bend = 1.6,
                          .bendDecay = 0.16, .glide = 0.03, .drive = 0.3};
constexpr Patch kIronBass{.gain = 0.42, .saw = 0.9, .square = 0.3, .sub = 0.55, .attack = 0.003, .decay = 0.16,
                          .sustain = 0.5, .release = 0.04, .cutoff = 560.0, .resonance = 0.25, .bend = 2.0,
                          .bendDecay = 0.07, .drive = 0.8};
constexpr Patch kStab{.gain = 0.26, .saw = 0.8, .square = 0.3, .unison = 5, .detune = 15.0, .spread = 0.8,
                      .attack = 0.002, .decay = 0.22, .sustain = 0.35, .release = 0.12, .cutoff = 1700.0,
                      .resonance = 0.2, .bend = 1.8, .bendDecay = 0.14, .drive = 0.5};
constexpr Patch kPluck{.gain = 0.30, .saw = 0.8, .square = 0.25, .unison = 2, .detune = 5.0, .spread = 0.6,
                       .attack = 0.002, .decay = 0.13, .sustain = 0.0, .release = 0.10, .cutoff = 1100.0,
                       .resonance = 0.35, .bend = 2.2, .bendDecay = 0.08};
constexpr Patch kSolo{.gain = 0.26, .saw = 0.8, .square = 0.25, .unison = 3, .detune = 9.0, .spread = 0.45,
                      .attack = 0.012, .decay = 0.6, .sustain = 0.8, .release = 0.18, .cutoff = 3400.0,
                      .resonance = 0.15, .bend = 0.8, .bendDecay = 0.3, .vibrato = 11.0, .glide = 0.025};

Player with(PartId part, const Patch& patch, double velocity = 1.0, double gate = 1.0) {
    return {.part = part, .patch = patch, .velocity = velocity, .gate = gate};
}

Player bells(double ring, double velocity) {
    return {.part = kBell, .ring = ring, .velocity = velocity, .sway = 0.35};
}

// ---- The scenes, in D minor --------------------------------------------------------

// Bars 0-3: fire, the dagger lands on the second beat, pads climb.
void ignite(Song& song) {
    embers(song, at(0, 0), 8.0, 1.0, 0.35);
    addDrop(song, kKick, at(0, 0), 0.22, 60.0, 36.7, 0.1, 0.35);
    riser(song, at(0, 0), 0.5, 0.9);
    hit(song, Drum::kick, at(0, 4), 1.0);
    addDrop(song, kKick, at(0, 4), 0.35, 90.0, 36.7, 0.12, 0.5);
    addSteel(song, at(0, 4), 587.33, 1.3, 0.9, 0.0);
    addSteel(song, at(0, 4), 1174.66, 0.6, 0.6, 0.3);
    hit(song, Drum::crash, at(0, 4), 0.9);
    for (int bar = 1; bar < 4; ++bar) { // the glint on the word mark
        shing(song, at(bar, 6), 0.7);
    }
    Patch pad = kWarmPad;
    pad.cutoff = 800.0;
    Player swell = with(kPad, pad, 0.75);
    swell.swell = 0.35;
    line(song, swell, 0, "-/4 D3+A3+E4+F4/12 | Bb2+F3+D4+A4/16 | G2+D4+Bb4+A4/16 | A2+E4+A4+D5/8 A2+E4+A4+C#5/8");
    Player pluck = with(kArp, kPluck, 0.35, 0.8);
    pluck.swell = 0.55;
    pluck.sway = 0.4;
    line(song, pluck, 1, "D4/4 F4/4 A4/4 D5/4 | G4/2 Bb4/2 D5/2 A4/2 Bb4/2 D5/2 F5/2 D5/2 |"
                         "A4/1 D5/1 E5/1 A4/1 D5/1 E5/1 A5/1 E5/1 A4/1 C#5/1 E5/1 A5/1 C#5/1 E5/1 A5/1 C#6/1");
    line(song, bells(0.9, 0.5), 0, "-/4 D5+A5/8 A4/4");
    beat(song, Drum::soft, 2, "x...o...x...o...");
    beat(song, Drum::soft, 3, "X...x...X...X...");
    beat(song, Drum::snare, 3, "........o.o.ooxx", 0.8);
    beat(song, Drum::hat, 2, "..o...o...o...o.");
    beat(song, Drum::hat, 3, "o.o.o.o.oooooxxx");
    line(song, with(kBass, kFlowBass, 0.55), 2, "G1/16 | A1/16");
    riser(song, at(3, 0), 2.0, 0.8);
}

// Bars 4-6: the bass flows, a drop falls into the pool on every beat.
void melt(Song& song) {
    hit(song, Drum::crash, at(4, 0), 0.8);
    for (int bar = 4; bar < 7; ++bar) {
        beat(song, Drum::kick, bar, "X...X...X...X...", 0.9);
        beat(song, Drum::clap, bar, "....X.......X...", 0.8);
        beat(song, Drum::open, bar, "..x...x...x...x.", 0.8);
        beat(song, Drum::hat, bar, "o.oxo.oxo.oxo.ox", 0.7);
    }
    beat(song, Drum::snare, 6, "............o.xx");
    line(song, with(kBass, kFlowBass), 4, "D2/3 D2/3 A2/2 F2/3 G2/3 A2/2 | Bb1/3 Bb1/3 F2/2 D2/3 F2/3 A2/2 |"
                                          "C2/3 C2/3 G2/2 E2/3 G2/3 E2/2");
    Patch pad = kWarmPad;
    pad.cutoff = 1500.0;
    line(song, with(kPad, pad, 0.85), 4, "A3+C4+F4+D5/16 | A3+D4+F4+Bb4/16 | G3+D4+E4+C5/16");
    line(song, bells(0.28, 0.8), 4, "A5/4 F5/4 D5/4 C5/4 | A5/4 F5/4 D5/4 F5/4 | G5/4 E5/4 D5/4 C5/4");
    Patch liquid = kSolo;
    liquid.glide = 0.07;
    liquid.cutoff = 2200.0;
    line(song, with(kLead, liquid, 0.8), 4, "-/8 A4/4 C5/4 | D5/6 C5/2 A4/4 F4/4 | G4/6 A4/2 G4/4 E4/4");
    riser(song, at(6, 8), 1.0, 0.5);
}

// Bars 7-9: iron boots; snare rolls, a galloping bass, brass.
void guard(Song& song) {
    hit(song, Drum::crash, at(7, 0), 0.9);
    for (int bar = 7; bar < 10; ++bar) {
        beat(song, Drum::kick, bar, "X...X...X...X.x.");
        beat(song, Drum::snare, bar, bar < 9 ? "o.oox.ooo.oox.oo" : "o.oox.ooo.xxxxXX");
        beat(song, Drum::hat, bar, "x.o.x.o.x.o.x.o.", 0.8);
        beat(song, Drum::anvil, bar, "....x.......x...", 0.8);
        addSteel(song, at(bar, 0), 740.0, 0.8, 0.4, bar % 2 ? -0.4 : 0.4); // the round wipe
    }
    line(song, with(kBass, kIronBass, 1.0, 0.85), 7,
         "D2/2 D2/1 D2/1 A1/2 A1/1 A1/1 D2/2 D2/1 D2/1 A1/2 C2/2 |"
         "F1/2 F1/1 F1/1 C2/2 C2/1 C2/1 C2/2 C2/1 C2/1 G1/2 C2/2 |"
         "G1/2 G1/1 G1/1 D2/2 D2/1 D2/1 A1/2 A1/1 A1/1 A1/2 E2/2");
    const char* call = "D4/4 F4/4 G4/2 A4/6 | A4/4 C5/4 G4/4 E4/4 | D4/4 G4/4 A4/4 C#5/4";
    line(song, with(kLead, kBrass, 1.35, 0.9), 7, call);
    Player low = with(kLead, kBrass, 0.9, 0.9);
    low.transpose = -12;
    line(song, low, 7, call);
    line(song, with(kArp, kStab, 0.65, 0.6), 7,
         "D4+F4+A4/3 D4+F4+A4/3 D4+F4+A4/2 D4+F4+A4/4 D4+F4+A4/4 |"
         "C4+F4+A4/3 C4+F4+A4/3 C4+F4+A4/2 C4+E4+G4/4 C4+E4+G4/4 |"
         "Bb3+D4+G4/3 Bb3+D4+G4/3 Bb3+D4+G4/2 C#4+E4+A4/4 C#4+E4+A4/4");
    riser(song, at(9, 8), 1.0, 0.6);
}

// Bars 10-12: three words, each stamped; the last quarter of a bar is left to the fill, the third word hisses.
void heat(Song& song) {
    const char* stamps[] = {"X..X..X.X.......", "X..X..X.X.x.....", "X..X............"};
    const char* chords[] = {"D3+A3+D4!/3 D3+A3+D4/3 D3+A3+D4/2 D3+A3+D4!/4 -/4",
                            "Eb3+Bb3+Eb4!/3 Eb3+Bb3+Eb4/3 D3+A3+D4/2 Eb3+Bb3+Eb4!/2 F3+C4+F4/2 -/4",
                            "A2+E3+A3!/3 A2+E3+A3!/5 -/8"};
    const char* basses[] = {"D2/3 D2/3 D2/2 D2/2 D1/2 D2/1 D2/1 C2/1 C2/1",
                            "Eb2/3 Eb2/3 D2/2 Eb2/2 F2/2 Eb2/1 Eb2/1 Bb1/1 Bb1/1", "A1/3 A1/5 -/8"};
    for (int i = 0; i < 3; ++i) {
        int bar = 10 + i;
        hit(song, Drum::crash, at(bar, 0), i == 2 ? 1.0 : 0.7);
        beat(song, Drum::kick, bar, stamps[i]);
        beat(song, Drum::tomLow, bar, stamps[i], 0.45);
        beat(song, Drum::clap, bar, stamps[i], 0.6);
        addSteel(song, at(bar, 0), 587.33 * 0.75, 1.2, 0.5, 0.0);
        addSteel(song, at(bar, 3), 587.33, 0.7, 0.25, 0.4);
        line(song, with(kLead, kStab, 2.0, 0.85), bar, chords[i]);
        line(song, with(kBass, kIronBass, 1.0, 0.9), bar, basses[i]);
    }
    for (int bar = 10; bar < 12; ++bar) {
        beat(song, Drum::hat, bar, "x.o.x.o.x.o.xoxo");
        beat(song, Drum::tomHigh, bar, "............X.x.");
        beat(song, Drum::tomLow, bar, ".............x.X");
        beat(song, Drum::anvil, bar, "......x.......x.");
    }
    line(song, with(kArp, kPluck, 1.3, 0.9), 10, "-/12 A4/1 C5/1 D5/1 A4/1 | -/12 Bb4/1 Eb5/1 D5/1 Bb4/1");
    addBurst(song, kAir, {.start = at(12, 0), .length = 1.9, .level = 1.3, .swell = 0.02, .decay = 0.45,
                          .fromHz = 7000.0, .toHz = 1100.0, .resonance = 0.3, .band = Band::band, .width = 1.0});
    Patch cold = kWarmPad;
    cold.attack = 0.9;
    line(song, with(kPad, cold, 0.7), 12, "-/4 A3+D4+E4+A4/6 A3+C#4+E4+A4/6");
    beat(song, Drum::snare, 12, "........o.o.oxxX", 0.9);
    beat(song, Drum::kick, 12, "............x.x.", 0.8);
    riser(song, at(12, 4), 1.5, 1.0);
}

// Bars 13-16: a fall down D, C, Bflat, A under sixteenths; the mark flashes on the beats of the third bar.
void descent(Song& song) {
    hit(song, Drum::crash, at(13, 0), 1.0);
    for (int bar = 13; bar < 17; ++bar) {
        beat(song, Drum::kick, bar, bar < 16 ? "X...X...X...X..." : "X...X...X.x.....");
        beat(song, Drum::clap, bar, "....X.......X...", 0.9);
        beat(song, Drum::snare, bar, bar < 16 ? ".......o.o......" : "....o..oo.xoxxXX", 0.8);
        beat(song, Drum::open, bar, "..X...X...X...X.", 0.8);
        beat(song, Drum::hat, bar, "xoooxoooxoooxooo", 0.8);
    }
    line(song, with(kBass, kIronBass, 1.0, 0.9), 13,
         "-/1 D2/1 D2/1 D3/1 -/1 D2/1 D2/1 D2/1 -/1 D2/1 D2/1 D3/1 -/1 D2/1 D2/1 A1/1 |"
         "-/1 C2/1 C2/1 C3/1 -/1 C2/1 C2/1 C2/1 -/1 C2/1 C2/1 C3/1 -/1 C2/1 C2/1 G1/1 |"
         "-/1 Bb1/1 Bb1/1 Bb2/1 -/1 Bb1/1 Bb1/1 Bb1/1 -/1 Bb1/1 Bb1/1 Bb2/1 -/1 Bb1/1 Bb1/1 F1/1 |"
         "-/1 A1/1 A1/1 A2/1 -/1 A1/1 A1/1 A1/1 A1/2 G1/2 F1/2 E1/2");
    Player arp = with(kArp, kPluck, 0.9, 0.9);
    arp.sway = 0.55;
    line(song, arp, 13,
         "D5/1 A4/1 F4/1 A4/1 E5/1 A4/1 F4/1 A4/1 F5/1 A4/1 F4/1 A4/1 E5/1 A4/1 D5/1 A4/1 |"
         "C5/1 G4/1 E4/1 G4/1 D5/1 G4/1 E4/1 G4/1 E5/1 G4/1 E4/1 G4/1 D5/1 G4/1 C5/1 G4/1 |"
         "Bb4/1 F4/1 D4/1 F4/1 C5/1 F4/1 D4/1 F4/1 D5/1 F4/1 D4/1 F4/1 C5/1 F4/1 Bb4/1 F4/1 |"
         "A4/1 E4/1 C#4/1 E4/1 B4/1 E4/1 C#4/1 E4/1 C#5/1 A4/1 E5/1 C#5/1 A5/1 E5/1 C#6/1 A5/1");
    Patch solo = kSolo;
    solo.attack = 0.03;
    line(song, with(kLead, solo, 0.8), 13, "A5/8 F5/8 | G5/8 E5/6 D5/2 | F5/8 D5/8 | E5/6 D5/2 C#5/8");
    line(song, with(kPad, kWarmPad, 0.7), 13, "A3+D4+F4/16 | G3+C4+E4/16 | F3+Bb3+D4/16 | E3+A3+C#4/16");
    for (int quarter = 0; quarter < 4; ++quarter) {
        addSteel(song, at(15, quarter * 4), 932.33, 0.9, 0.3, quarter % 2 ? 0.5 : -0.5);
    }
    line(song, with(kLead, kStab, 0.9, 0.5), 15, "Bb3+D4+F4/4 Bb3+D4+F4/4 Bb3+D4+F4/4 Bb3+D4+F4/4");
    riser(song, at(16, 0), 2.0, 0.9);
}

// Bars 17-20: smoke; one stroke a bar, a slow song of bells that will become the theme.
void trail(Song& song) {
    for (int bar = 17; bar < 21; ++bar) {
        hit(song, Drum::soft, at(bar, 0), 0.9);
        addSteel(song, at(bar, 0), 1174.66, 0.55, 0.8, bar % 2 ? -0.3 : 0.3);
        addBurst(song, kAir, {.start = at(bar, 0), .length = 2.0, .level = 0.55, .swell = 1.0, .decay = 0.35,
                              .fromHz = bar % 2 ? 900.0 : 2100.0, .toHz = bar % 2 ? 2100.0 : 900.0,
                              .resonance = 0.5, .band = Band::band, .fromPan = bar % 2 ? -0.6 : 0.6,
                              .toPan = bar % 2 ? 0.6 : -0.6, .width = 0.3});
    }
    line(song, bells(1.1, 0.95), 17, "F5/6 D5/2 C5/8 | A4/6 C5/2 G5/8 | F5/6 D5/2 Bb4/4 A4/4 | D5/6 E5/2 C#5/8");
    Player answer = bells(0.7, 0.4);
    answer.transpose = 12;
    line(song, answer, 17, "-/10 F5/2 A5/4 | -/10 A5/2 C6/4 | -/10 F5/2 D5/4 | -/10 A5/2 E5/4");
    Patch airy = kWarmPad;
    airy.cutoff = 2600.0;
    airy.attack = 0.5;
    line(song, with(kPad, airy, 0.8), 17, "F4+A4+C5+D5/16 | F4+A4+C5+G5/16 | F4+A4+Bb4+D5/16 | E4+A4+D5/8 E4+A4+C#5/8");
    Patch deep = kFlowBass;
    deep.cutoff = 300.0;
    deep.bend = 0.6;
    deep.attack = 0.05;
    deep.glide = 0.0;
    line(song, with(kBass, deep, 0.75, 0.95), 17, "Bb1/16 | A1/16 | G1/16 | A1/16");
    Player dust = with(kArp, kPluck, 0.28, 0.8);
    dust.sway = 0.8;
    dust.swell = 0.3;
    line(song, dust, 19, "D5/3 Bb4/3 F5/3 A4/3 D5/4 | E5/2 A4/2 D5/2 A5/2 C#5/2 E5/2 A5/2 C#6/2");
    beat(song, Drum::hat, 19, "..o...o...o...o.", 0.8);
    beat(song, Drum::hat, 20, "..o...o...o.o.oo");
    beat(song, Drum::tomLow, 20, "........x..xx.xX", 0.6);
    beat(song, Drum::tomHigh, 20, "..........o..x..", 0.7);
    riser(song, at(20, 0), 2.0, 1.0);
}

// Bars 21-24: the theme, in octaves over half-time drums.
void monolith(Song& song) {
    for (int bar = 21; bar < 25; ++bar) {
        hit(song, Drum::crash, at(bar, 0), bar == 21 ? 1.1 : 0.6);
        addDrop(song, kKick, at(bar, 0), 0.3, 80.0, 36.7, 0.1, 0.4);
        beat(song, Drum::kick, bar, bar < 24 ? "X.....x.....x.x." : "X.....x...x.....");
        beat(song, Drum::snare, bar, bar < 24 ? "........X......." : "........X...ooxx", 1.15);
        beat(song, Drum::clap, bar, "........X.......");
        beat(song, Drum::hat, bar, "x.o.x.o.x.o.x.o.", 0.8);
    }
    beat(song, Drum::tomHigh, 22, "............x.x.");
    beat(song, Drum::tomLow, 22, ".............x.x");
    beat(song, Drum::tomHigh, 24, "............X.x.");
    beat(song, Drum::tomLow, 24, ".............x.X");
    addSteel(song, at(21, 0), 587.33, 1.2, 0.9, 0.0);
    addSteel(song, at(23, 0), 698.46, 0.8, 0.7, 0.0);
    const char* theme = "D5/6 A4/2 F5/4 E5/4 | D5/6 F5/2 Bb5/4 A5/4 | A5/6 G5/2 F5/4 C5/4 | E5/6 F5/2 G5/6 E5/2";
    line(song, with(kLead, kSolo, 1.0, 0.98), 21, theme);
    Player low = with(kLead, kBrass, 0.9, 0.95);
    low.transpose = -12;
    line(song, low, 21, theme);
    line(song, with(kPad, kWarmPad, 1.1), 21, "A3+D4+F4+A4/16 | Bb3+D4+F4+Bb4/16 | A3+C4+F4+A4/16 | G3+C4+E4+G4/16");
    line(song, with(kBass, kIronBass, 1.0, 0.9), 21,
         "D2/2 D2/2 D2/2 D2/2 D2/2 D2/2 A1/2 C2/2 | Bb1/2 Bb1/2 Bb1/2 Bb1/2 Bb1/2 Bb1/2 D2/2 Bb1/2 |"
         "F2/2 F2/2 F2/2 F2/2 F2/2 F2/2 C2/2 D2/2 | C2/2 C2/2 C2/2 C2/2 C2/2 C2/2 G1/2 C2/2");
    Player arp = with(kArp, kPluck, 0.6, 0.9);
    arp.sway = 0.7;
    line(song, arp, 21,
         "D5/1 F5/1 A5/1 F5/1 D5/1 F5/1 A5/1 F5/1 D5/1 F5/1 A5/1 F5/1 D5/1 A5/1 D6/1 A5/1 |"
         "D5/1 F5/1 Bb5/1 F5/1 D5/1 F5/1 Bb5/1 F5/1 D5/1 F5/1 Bb5/1 F5/1 D5/1 Bb5/1 D6/1 Bb5/1 |"
         "C5/1 F5/1 A5/1 F5/1 C5/1 F5/1 A5/1 F5/1 C5/1 F5/1 A5/1 F5/1 C5/1 A5/1 C6/1 A5/1 |"
         "C5/1 E5/1 G5/1 E5/1 C5/1 E5/1 G5/1 E5/1 C5/1 E5/1 G5/1 E5/1 C5/1 G5/1 C6/1 G5/1");
    riser(song, at(24, 8), 1.0, 0.8);
}

// Bars 25-28: embers; the bells remember the theme and stop on the leading note of the strike that opens the show.
void rest(Song& song) {
    hit(song, Drum::kick, at(25, 0), 0.9);
    hit(song, Drum::crash, at(25, 0), 0.7);
    addSteel(song, at(25, 0), 392.0, 0.8, 0.9, 0.0);
    embers(song, at(25, 0), 8.0, 0.2, 1.0);
    beat(song, Drum::soft, 26, "x.......o.......");
    beat(song, Drum::soft, 27, "o.......o.......");
    Patch pad = kWarmPad;
    pad.open = -0.7;
    pad.cutoff = 2200.0;
    Player fade = with(kPad, pad, 0.9);
    fade.swell = -0.35;
    line(song, fade, 25, "Bb3+D4+F4+A4/16 | A3+D4+F4+A4/16 | F3+Bb3+D4+A4/16 | E3+A3+D4+G4/8 E3+A3+C#4+G4/8");
    Patch deep = kFlowBass;
    deep.cutoff = 300.0;
    deep.bend = 0.7;
    deep.glide = 0.0;
    line(song, with(kBass, deep, 0.7, 0.97), 25, "G1/16 | F1/16 | Bb1/16 | A1/12 -/4");
    line(song, bells(1.2, 0.8), 25, "D5/6 A4/2 Bb4/8 | A4/6 F4/2 D5/8 | D5/6 F5/2 A5/4 F5/4 | E5/6 D5/2 C#5/8");
    Player dust = with(kArp, kPluck, 0.45, 0.9);
    dust.sway = 0.7;
    dust.swell = -0.4;
    line(song, dust, 25, "G4/2 Bb4/2 D5/2 F5/2 D5/2 Bb4/2 A4/2 Bb4/2 | F4/2 A4/2 D5/2 A4/2 F4/2 A4/2 D5/4 |"
                         "F4/4 Bb4/4 D5/4 A4/4");
    beat(song, Drum::hat, 25, "..o...o...o...o.", 0.7);
    riser(song, at(28, 8), 1.0, 0.35);
}

// ---- Mix ---------------------------------------------------------------------------

using Ring = std::vector<double>;

// 1 at rest, 0 under a kick; it comes back within a beat.
Ring duckCurve(const Song& song) {
    Ring curve(kFrames, 1.0);
    for (double kick : song.kicks) {
        int first = frameOf(kick), count = frameOf(0.32);
        for (int i = 0; i < count; ++i) {
            double t = static_cast<double>(i) / kRate, u = std::max(0.0, t - 0.03) / 0.29;
            double value = t < 0.004 ? 1.0 - t / 0.004 : u * u * (3.0 - 2.0 * u);
            double& place = curve[(first + i) % kFrames];
            place = std::min(place, value);
        }
    }
    return curve;
}

void cutLows(std::vector<float>& side, double hz) {
    Filter filter;
    filter.tune(hz, 0.31); // close to Butterworth
    for (int i = -kFrames; i < kFrames; ++i) {
        size_t place = static_cast<size_t>(i < 0 ? i + kFrames : i);
        filter.feed(side[place]);
        if (i >= 0) {
            side[place] = static_cast<float>(filter.high);
        }
    }
}

// Ping-pong echo of three sixteenths; the repeats lose highs and lows.
void addEcho(const Ring (&in)[2], Ring (&out)[2]) {
    const size_t length = static_cast<size_t>(frameOf(3.0 * kStep));
    Ring lines[2] = {Ring(length), Ring(length)};
    Filter high[2], low[2];
    for (int c = 0; c < 2; ++c) {
        high[c].tune(350.0, 0.3);
        low[c].tune(4200.0, 0.3);
    }
    for (int i = 0; i < 2 * kFrames; ++i) {
        size_t place = static_cast<size_t>(i % kFrames), slot = static_cast<size_t>(i) % length;
        double heard[2] = {lines[0][slot], lines[1][slot]};
        for (int c = 0; c < 2; ++c) {
            double fed = (c == 0 ? in[0][place] + 0.5 * in[1][place] : 0.5 * in[1][place]) + 0.52 * heard[1 - c];
            high[c].feed(fed);
            low[c].feed(high[c].high);
            lines[c][slot] = low[c].low;
            if (i >= kFrames) {
                out[c][place] += heard[c];
            }
        }
    }
}

// Hall: eight delay lines mixed by a Hadamard matrix, each losing highs at every turn.
void addHall(const Ring (&in)[2], Ring (&out)[2], double seconds) {
    constexpr int kLines = 8;
    constexpr int kLength[kLines] = {1557, 1789, 2081, 2371, 2687, 3001, 3359, 3697};
    const size_t early = static_cast<size_t>(frameOf(0.022));
    std::array<Ring, kLines> lines;
    double keep[kLines], dark[kLines] = {};
    for (int n = 0; n < kLines; ++n) {
        lines[n].assign(kLength[n], 0.0);
        keep[n] = std::pow(10.0, -3.0 * kLength[n] / (seconds * kRate)) / std::sqrt(8.0);
    }
    for (int i = 0; i < 2 * kFrames; ++i) {
        size_t place = static_cast<size_t>(i % kFrames);
        size_t before = (place + kFrames - early) % kFrames;
        double v[kLines];
        for (int n = 0; n < kLines; ++n) {
            dark[n] += 0.55 * (lines[n][i % kLength[n]] - dark[n]);
            v[n] = dark[n];
        }
        if (i >= kFrames) {
            out[0][place] += 0.5 * (v[0] - v[2] + v[4] - v[6]);
            out[1][place] += 0.5 * (v[1] - v[3] + v[5] - v[7]);
        }
        for (int half = 1; half < kLines; half *= 2) {
            for (int n = 0; n < kLines; ++n) {
                if (!(n & half)) {
                    double a = v[n], b = v[n + half];
                    v[n] = a + b;
                    v[n + half] = a - b;
                }
            }
        }
        for (int n = 0; n < kLines; ++n) {
            lines[n][i % kLength[n]] = v[n] * keep[n] + in[n % 2][before];
        }
    }
}

// The largest magnitude near a sample of the wave that the samples stand for: four points between neighbours.
double peakNear(const Ring& side, int frame) {
    constexpr int kReach = 6;
    static const auto kTaps = [] {
        std::array<std::array<double, 2 * kReach>, 3> taps{};
        for (int q = 0; q < 3; ++q) {
            for (int n = 0; n < 2 * kReach; ++n) {
                double x = (n - kReach + 1) - (q + 1) * 0.25, w = std::cos(kTau * 0.25 * x / kReach);
                taps[q][n] = std::sin(kTau * 0.5 * x) / (kTau * 0.5 * x) * w * w;
            }
        }
        return taps;
    }();
    double peak = std::abs(side[frame]);
    for (const auto& taps : kTaps) {
        double sum = 0.0;
        for (int n = 0; n < 2 * kReach; ++n) {
            sum += taps[n] * side[(frame + n - kReach + 1 + kFrames) % kFrames];
        }
        peak = std::max(peak, std::abs(sum));
    }
    return peak;
}

// Never above the ceiling: the gain looks 5 ms to either side and comes back within some 80 ms.
void limit(Ring (&sides)[2], double ceiling) {
    constexpr int kReach = 220;
    Ring need(kFrames), gain(kFrames);
    for (int i = 0; i < kFrames; ++i) {
        double peak = std::max(peakNear(sides[0], i), peakNear(sides[1], i));
        need[i] = std::min(1.0, ceiling / std::max(peak, 1e-9));
    }
    for (int i = 0; i < kFrames; ++i) {
        if (need[i] < 1.0) {
            for (int n = -kReach; n <= kReach; ++n) {
                double& place = gain[(i + n + kFrames) % kFrames];
                place = std::max(place, 1.0 - need[i]);
            }
        }
    }
    double held = 0.0; // how much is taken away
    for (int i = 0; i < 2 * kFrames; ++i) {
        held = std::max(gain[i % kFrames], held * (1.0 - 1.0 / (0.08 * kRate)));
        gain[i % kFrames] = held;
    }
    double sum = 0.0;
    for (int i = -kReach; i <= kReach; ++i) {
        sum += gain[(i + kFrames) % kFrames];
    }
    for (int i = 0; i < kFrames; ++i) {
        double keep = 1.0 - sum / (2 * kReach + 1);
        sides[0][i] *= keep;
        sides[1][i] *= keep;
        sum += gain[(i + kReach + 1) % kFrames] - gain[(i - kReach + kFrames) % kFrames];
    }
}

void mix(Song& song, const std::string& only, Ring (&master)[2]) {
    constexpr double kLoudness = 1.22, kCeiling = 0.79, kShelf = 0.35; // kShelf: added share above 1.5 kHz
    Ring duck = duckCurve(song), hall[2], echo[2];
    for (int c = 0; c < 2; ++c) {
        hall[c].assign(kFrames, 0.0);
        echo[c].assign(kFrames, 0.0);
        master[c].assign(kFrames, 0.0);
    }
    for (Part& part : song.parts) {
        for (int c = 0; c < 2; ++c) {
            std::vector<float>& side = c ? part.right : part.left;
            cutLows(side, part.lowCut);
            double gain = only.empty() || only == part.name ? fromDb(part.gain) : 0.0;
            for (int i = 0; i < kFrames; ++i) {
                double v = side[i] * gain * (1.0 - part.duck * (1.0 - duck[i]));
                side[i] = static_cast<float>(v);
                master[c][i] += v;
                hall[c][i] += v * part.hall;
                echo[c][i] += v * part.echo;
            }
        }
    }
    Ring repeats[2] = {Ring(kFrames), Ring(kFrames)};
    addEcho(echo, repeats);
    for (int c = 0; c < 2; ++c) {
        for (int i = 0; i < kFrames; ++i) {
            repeats[c][i] *= 1.0 - 0.4 * (1.0 - duck[i]);
            master[c][i] += repeats[c][i];
            hall[c][i] += 0.3 * repeats[c][i];
        }
    }
    addHall(hall, master, 2.1);
    for (Ring& side : master) {
        Filter bright;
        bright.tune(1500.0, 0.3);
        for (int i = -kRate; i < kFrames; ++i) {
            double& v = side[(i + kFrames) % kFrames];
            bright.feed(v);
            if (i >= 0) { // rounds what stands out before the limiter sees it
                v = 1.25 * std::tanh((v + kShelf * bright.high) * kLoudness / 1.25);
            }
        }
    }
    limit(master, kCeiling);
}

// ---- Output ------------------------------------------------------------------------

void printLevels(const Song& song) {
    constexpr int kScenes[] = {0, 4, 7, 10, 13, 17, 21, 25, 29};
    constexpr const char* kNames[] = {"ignite", "melt", "guard", "heat", "descent", "trail", "monolith", "rest"};
    for (int s = 0; s < 8; ++s) {
        std::printf("%-9s", kNames[s]);
        for (const Part& part : song.parts) {
            int from = kScenes[s] * 2 * kRate, to = kScenes[s + 1] * 2 * kRate;
            double sum = 1e-12;
            for (int i = from; i < to; ++i) {
                sum += 0.5 * (part.left[i] * part.left[i] + part.right[i] * part.right[i]);
            }
            std::printf(" %s %.1f", part.name, 10.0 * std::log10(sum / (to - from)));
        }
        std::printf("\n");
    }
}

void printNotes(const Song& song) {
    constexpr const char* kLetters[] = {"C", "C#", "D", "Eb", "E", "F", "F#", "G", "G#", "A", "Bb", "B"};
    for (const NoteEntry& note : song.notes) {
        std::printf("%2d %5.2f %5.2f %-5s %s%d\n", static_cast<int>(note.step) / kSteps,
                    std::fmod(note.step, kSteps), note.length, song.parts[note.part].name,
                    kLetters[note.key % 12], note.key / 12 - 1);
    }
}

// 24-bit stereo WAV.
bool writeWave(const char* path, const Ring (&sides)[2]) {
    std::vector<uint8_t> bytes;
    auto put = [&](uint32_t value, int count) {
        for (int i = 0; i < count; ++i) {
            bytes.push_back(static_cast<uint8_t>(value >> (8 * i)));
        }
    };
    auto tag = [&](const char* text) { bytes.insert(bytes.end(), text, text + 4); };
    const uint32_t size = kFrames * 6u;
    tag("RIFF"), put(size + 36, 4), tag("WAVE"), tag("fmt "), put(16, 4), put(1, 2), put(2, 2);
    put(kRate, 4), put(kRate * 6, 4), put(6, 2), put(24, 2), tag("data"), put(size, 4);
    for (int i = 0; i < kFrames; ++i) {
        for (const Ring& side : sides) {
            double v = std::clamp(side[i], -1.0, 1.0);
            put(static_cast<uint32_t>(static_cast<int32_t>(std::lround(v * 8388607.0))), 3);
        }
    }
    FILE* file = std::fopen(path, "wb");
    bool whole = file && std::fwrite(bytes.data(), 1, bytes.size(), file) == bytes.size();
    return file && std::fclose(file) == 0 && whole;
}

} // namespace

int main(int argc, char** argv) {
    std::string path, only;
    bool list = false;
    for (int i = 1; i < argc; ++i) {
        std::string word = argv[i];
        if (word == "--notes") {
            list = true;
        } else if (word == "--only" && i + 1 < argc) {
            only = argv[++i];
        } else {
            path = word;
        }
    }
    if (path.empty()) {
        std::fprintf(stderr, "usage: make_music [--notes] [--only PART] FILE.wav\n");
        return 1;
    }
    Song song;
    for (Part& part : song.parts) {
        part.left.assign(kFrames, 0.0f);
        part.right.assign(kFrames, 0.0f);
    }
    ignite(song), melt(song), guard(song), heat(song), descent(song), trail(song), monolith(song), rest(song);
    if (list) {
        printNotes(song);
    }
    Ring master[2];
    mix(song, only, master);
    printLevels(song);
    if (!writeWave(path.c_str(), master)) {
        std::fprintf(stderr, "%s: cannot be written\n", path.c_str());
        return 1;
    }
    return 0;
}
