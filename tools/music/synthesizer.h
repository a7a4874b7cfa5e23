// Instruments: each call lays one sound into a part of the song.
#pragma once

#include "song.h"

struct Noise {
    uint32_t state = 1;
    double next() { // -1..1
        state ^= state << 13;
        state ^= state >> 17;
        state ^= state << 5;
        return static_cast<double>(state) / 2147483648.0 - 1.0;
    }
};

// How a pitched voice sounds.
struct Patch {
    double gain = 0.3;
    double saw = 1.0, square = 0.0, sub = 0.0; // oscillator levels; sub is a sine at the note's own pitch
    int unison = 1;
    double detune = 0.0, spread = 0.0;                                 // cents to either side; stereo width 0..1
    double attack = 0.003, decay = 0.3, sustain = 0.7, release = 0.08; // s, s, level, s
    double cutoff = 1200.0, resonance = 0.1;                           // Hz, 0..1
    double bend = 0.0, bendAttack = 0.0, bendDecay = 0.2;              // octaves the envelope opens the filter, s, s
    double open = 0.0;                 // octaves it opens from the note's start to its end
    double vibrato = 0.0, glide = 0.0; // cents; s to come from the note before
    double drive = 0.0;
};

struct Tone {
    double start = 0.0, length = 0.0; // s
    double key = 0.0, from = 0.0;     // MIDI; from: where a glide begins
    double velocity = 1.0, pan = 0.0;
};

enum class Band { low, band, high };

// A burst of filtered noise; the filter and the place may move over its length.
struct Burst {
    double start = 0.0, length = 0.1; // s
    double level = 0.5;
    double swell = 0.001; // s from nothing to full
    double decay = 0.05;  // s, after the swell
    double fromHz = 8000.0, toHz = 8000.0, resonance = 0.2;
    Band band = Band::high;
    double fromPan = 0.0, toPan = 0.0, width = 0.0; // width: share of noise that differs between the sides
};

enum class Drum { kick, soft, snare, clap, hat, open, tomHigh, tomLow, anvil, crash };

// Adds a sample to both sides. Equal-power panning, -1 left .. 1 right; a centred sound has gain 1 on both.
void mixIn(Part& part, int64_t frame, double value, double pan);

void addVoice(Song& song, PartId id, const Patch& patch, const Tone& tone);

// Glass. `ring`: seconds until a third of it is left.
void addBell(Song& song, PartId id, const Tone& tone, double ring);

// A steel bar struck at its end; `start` and `ring` in seconds.
void addSteel(Song& song, double start, double hz, double velocity, double ring, double pan);

// A sine that falls from one pitch to another: the body of kicks, toms and booms.
void addDrop(Song& song, PartId id, double start, double velocity, double fromHz, double toHz, double fall,
             double ring);

void addBurst(Song& song, PartId id, const Burst& burst);

// A stroke at t seconds; v: velocity.
void hit(Song& song, Drum drum, double t, double v);
