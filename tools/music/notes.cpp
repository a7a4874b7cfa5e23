// The track: its instruments, and what they play in each scene of the showcase, in D minor.
#include "score.h"

namespace {

constexpr Patch kWarmPad{.gain = 0.20,
                         .unison = 7,
                         .detune = 13.0,
                         .spread = 0.9,
                         .attack = 0.35,
                         .decay = 2.0,
                         .sustain = 0.85,
                         .release = 0.9,
                         .cutoff = 1600.0,
                         .open = 0.6};
constexpr Patch kBrass{.gain = 0.24,
                       .unison = 3,
                       .detune = 8.0,
                       .spread = 0.5,
                       .attack = 0.02,
                       .decay = 0.5,
                       .sustain = 0.75,
                       .release = 0.16,
                       .cutoff = 1500.0,
                       .bend = 1.7,
                       .bendAttack = 0.06,
                       .bendDecay = 0.5,
                       .vibrato = 7.0};
constexpr Patch kFlowBass{.gain = 0.42,
                          .saw = 0.7,
                          .square = 0.2,
                          .sub = 0.6,
                          .attack = 0.006,
                          .decay = 0.4,
                          .sustain = 0.75,
                          .release = 0.06,
                          .cutoff = 430.0,
                          .resonance = 0.45,
                          .bend = 1.6,
                          .bendDecay = 0.16,
                          .glide = 0.03,
                          .drive = 0.3};
constexpr Patch kIronBass{.gain = 0.42,
                          .saw = 0.9,
                          .square = 0.3,
                          .sub = 0.55,
                          .attack = 0.003,
                          .decay = 0.16,
                          .sustain = 0.5,
                          .release = 0.04,
                          .cutoff = 560.0,
                          .resonance = 0.25,
                          .bend = 2.0,
                          .bendDecay = 0.07,
                          .drive = 0.8};
constexpr Patch kStab{.gain = 0.26,
                      .saw = 0.8,
                      .square = 0.3,
                      .unison = 5,
                      .detune = 15.0,
                      .spread = 0.8,
                      .attack = 0.002,
                      .decay = 0.22,
                      .sustain = 0.35,
                      .release = 0.12,
                      .cutoff = 1700.0,
                      .resonance = 0.2,
                      .bend = 1.8,
                      .bendDecay = 0.14,
                      .drive = 0.5};
constexpr Patch kPluck{.gain = 0.30,
                       .saw = 0.8,
                       .square = 0.25,
                       .unison = 2,
                       .detune = 5.0,
                       .spread = 0.6,
                       .attack = 0.002,
                       .decay = 0.13,
                       .sustain = 0.0,
                       .release = 0.10,
                       .cutoff = 1100.0,
                       .resonance = 0.35,
                       .bend = 2.2,
                       .bendDecay = 0.08};
constexpr Patch kSolo{.gain = 0.26,
                      .saw = 0.8,
                      .square = 0.25,
                      .unison = 3,
                      .detune = 9.0,
                      .spread = 0.45,
                      .attack = 0.012,
                      .decay = 0.6,
                      .sustain = 0.8,
                      .release = 0.18,
                      .cutoff = 3400.0,
                      .resonance = 0.15,
                      .bend = 0.8,
                      .bendDecay = 0.3,
                      .vibrato = 11.0,
                      .glide = 0.025};

Player with(PartId part, const Patch& patch, double velocity = 1.0, double gate = 1.0) {
    return {.part = part, .patch = patch, .velocity = velocity, .gate = gate};
}

Player bells(double ring, double velocity) {
    return {.part = kBell, .ring = ring, .velocity = velocity, .sway = 0.35};
}

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
    line(song, swell, 0,
         "-/4 D3+F3+A3+E4/12 | Bb2+F3+D4+A4/16 | G2+D4+F4+Bb4/16 |"
         "A2+E4+A4+D5/8 A2+E4+A4+C#5/8");
    Player pluck = with(kArp, kPluck, 0.35, 0.8);
    pluck.swell = 0.55;
    pluck.sway = 0.4;
    line(song, pluck, 1,
         "D4/4 F4/4 A4/4 D5/4 | G4/2 Bb4/2 D5/2 A4/2 Bb4/2 D5/2 F5/2 D5/2 |"
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
    line(song, with(kBass, kFlowBass), 4,
         "D2/3 D2/3 A2/2 F2/3 G2/3 A2/2 | Bb1/3 Bb1/3 F2/2 D2/3 F2/3 A2/2 |"
         "C2/3 C2/3 G2/2 E2/3 G2/3 E2/2");
    Patch pad = kWarmPad;
    pad.cutoff = 1500.0;
    line(song, with(kPad, pad, 0.85), 4, "A3+C4+F4+D5/16 | A3+D4+F4+C5/16 | G3+D4+E4+C5/16");
    line(song, bells(0.28, 0.8), 4, "A5/4 F5/4 D5/4 C5/4 | A5/4 F5/4 D5/4 F5/4 | G5/4 E5/4 D5/4 C5/4");
    Patch liquid = kSolo;
    liquid.glide = 0.07;
    liquid.cutoff = 3400.0;
    line(song, with(kLead, liquid, 1.0), 4, "-/8 A4/4 C5/4 | D5/6 C5/2 A4/4 F4/4 | G4/6 A4/2 G4/4 E4/4");
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
    line(song, with(kArp, kStab, 0.85, 0.6), 7,
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
    addBurst(song, kAir,
             {.start = at(12, 0),
              .length = 1.9,
              .level = 1.3,
              .swell = 0.02,
              .decay = 0.45,
              .fromHz = 7000.0,
              .toHz = 1100.0,
              .resonance = 0.3,
              .band = Band::band,
              .width = 1.0});
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
        addBurst(song, kAir,
                 {.start = at(bar, 0),
                  .length = 2.0,
                  .level = 0.55,
                  .swell = 1.0,
                  .decay = 0.35,
                  .fromHz = bar % 2 ? 900.0 : 2100.0,
                  .toHz = bar % 2 ? 2100.0 : 900.0,
                  .resonance = 0.5,
                  .band = Band::band,
                  .fromPan = bar % 2 ? -0.6 : 0.6,
                  .toPan = bar % 2 ? 0.6 : -0.6,
                  .width = 0.3});
    }
    line(song, bells(1.1, 0.95), 17, "F5/6 D5/2 C5/8 | A4/6 C5/2 G5/8 | F5/6 D5/2 Bb4/4 A4/4 | D5/6 E5/2 C#5/8");
    Player answer = bells(0.7, 0.4);
    answer.transpose = 12;
    line(song, answer, 17, "-/10 F5/2 A5/4 | -/10 A5/2 C6/4 | -/10 F5/2 D5/4 | -/10 A5/2 E5/4");
    Patch airy = kWarmPad;
    airy.cutoff = 2600.0;
    airy.attack = 0.5;
    line(song, with(kPad, airy, 0.8), 17, "F4+A4+C5+D5/16 | F4+A4+C5+G5/16 | F4+G4+D5/16 | E4+A4+D5/8 E4+A4+C#5/8");
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
    line(song, with(kPad, kWarmPad, 1.1), 21, "A3+D4+A4+D5/16 | Bb3+D4+F4+D5/16 | A3+C4+F4+A4/16 | G3+C4+E4+G4/16");
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

// Bars 25-28: embers; the bells remember the theme and stop on the leading note of the strike in bar 0.
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
    line(song, fade, 25, "Bb3+D4+F4+D5/16 | A3+D4+F4+A4/16 | F3+Bb3+D4+A4/16 | E3+A3+D4+G4/8 E3+A3+C#4+G4/4 -/4");
    Patch deep = kFlowBass;
    deep.cutoff = 300.0;
    deep.bend = 0.7;
    deep.glide = 0.0;
    line(song, with(kBass, deep, 0.7, 0.97), 25, "G1/16 | F1/16 | Bb1/16 | A1/12 -/4");
    line(song, bells(1.2, 0.8), 25, "D5/6 A4/2 Bb4/8 | A4/6 F4/2 D5/8 | D5/6 F5/2 A5/4 F5/4");
    line(song, bells(0.6, 0.75), 28, "E5/6 D5/2 C#5/8");
    Player dust = with(kArp, kPluck, 0.45, 0.9);
    dust.sway = 0.7;
    dust.swell = -0.4;
    line(song, dust, 25,
         "G4/2 Bb4/2 D5/2 F5/2 D5/2 Bb4/2 A4/2 Bb4/2 | F4/2 A4/2 D5/2 A4/2 F4/2 A4/2 D5/4 |"
         "F4/4 Bb4/4 D5/4 A4/4");
    beat(song, Drum::hat, 25, "..o...o...o...o.", 0.7);
    riser(song, at(28, 8), 1.0, 0.35);
}

} // namespace

void writeNotes(Song& song) {
    ignite(song);
    melt(song);
    guard(song);
    heat(song);
    descent(song);
    trail(song);
    monolith(song);
    rest(song);
}
