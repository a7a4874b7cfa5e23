// The showcase's track while it is made: its measures, and what each instrument group sounds like so far.
#pragma once

#include <array>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <vector>

// Everything is laid on rings of the track's length: a note that sounds past the end goes on at the beginning,
// and whatever has a memory (echo, hall, limiter) goes round twice and keeps the second round.
constexpr int kRate = 44100;
constexpr int kBars = 29;
constexpr int kSteps = 16;      // a bar
constexpr double kStep = 0.125; // s, at 120 beats a minute
constexpr int kFrames = kBars * 2 * kRate;
constexpr double kTau = 2.0 * std::numbers::pi;

// Samples of one side, around the track or around a delay.
using Ring = std::vector<double>;

enum PartId { kKick, kDrums, kSteel, kBass, kPad, kArp, kLead, kBell, kAir, kPartCount };

// One instrument group, from its notes to its place in the mix.
struct Part {
    const char* name = "";
    double gain = 0.0;    // dB
    double duck = 0.0;    // how much of it a kick takes away, 0..1
    double hall = 0.0;    // share sent to the reverb
    double echo = 0.0;    // share sent to the ping-pong delay
    double lowCut = 20.0; // Hz
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

inline double at(int bar, double step) {
    return (bar * kSteps + step) * kStep;
} // s
inline int frameOf(double seconds) {
    return static_cast<int>(std::lround(seconds * kRate));
}
