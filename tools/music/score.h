// Notes as they are written: lines of keys, drum patterns, and noises that last.
#pragma once

#include "synthesizer.h"

// How a line is played: the instrument, and what it does to every note.
struct Player {
    PartId part = kLead;
    Patch patch = {};
    double ring = 0.0; // s; above 0 the note is a bell's
    double velocity = 1.0;
    double gate = 1.0; // share of its length that a note sounds
    int transpose = 0;
    double pan = 0.0, sway = 0.0; // sway: every second note goes so far to the other side
    double swell = 0.0;           // added to the velocity over each line
};

// A line is "KEY[+KEY...]/STEPS ...": "-" for a rest, "!" after the keys for an accent, "|" between bars.
void line(Song& song, const Player& player, int bar, const char* s);

// Sixteen places a bar: X loud, x middling, o soft.
void beat(Song& song, Drum drum, int bar, const char* pattern, double velocity = 1.0);

// Noise that climbs for some seconds and is gone at their end.
void riser(Song& song, double start, double length, double level);

// A blade drawn past the ear.
void shing(Song& song, double t, double velocity);

// Sparks of a fire: short clicks at times of their own, their density going from one level to another.
void embers(Song& song, double start, double length, double from, double to);

// All notes of the track.
void writeNotes(Song& song);
