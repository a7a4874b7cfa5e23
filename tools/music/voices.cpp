// The pitched instruments.
#include "filter.h"
#include "synthesizer.h"

#include <algorithm>

namespace {

double keyToHz(double key) {
    return 440.0 * std::exp2((key - 69.0) / 12.0);
}

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
    double shape = t < patch.bendAttack ? t / patch.bendAttack : std::exp((patch.bendAttack - t) / patch.bendDecay);
    double octaves = patch.bend * shape + patch.open * std::min(t / length, 1.0) + 0.3 * std::log2(hz / 262.0);
    return patch.cutoff * std::exp2(octaves);
}

struct Voice {
    static constexpr int kMost = 7;                 // oscillators in unison
    std::array<double, kMost> phase{}, increment{}; // turns, turns a sample
    double subPhase = 0.0, subIncrement = 0.0;
    Filter left[2], right[2];
};

// Sets pitch and filters for t seconds into the tone.
void tune(Voice& voice, const Patch& patch, const Tone& tone, double t) {
    double glide = patch.glide > 0.0 ? (tone.from - tone.key) * std::exp(-t / patch.glide) : 0.0;
    double wave = patch.vibrato / 100.0 * std::min(1.0, t / 0.5) * std::sin(kTau * 5.3 * t);
    double hz = keyToHz(tone.key + glide + wave);
    for (int u = 0; u < patch.unison; ++u) {
        double place = patch.unison > 1 ? 2.0 * u / (patch.unison - 1) - 1.0 : 0.0;
        voice.increment[u] = hz * std::exp2(place * patch.detune / 1200.0) / kRate;
    }
    voice.subIncrement = hz / kRate;
    for (Filter* filter : {voice.left, voice.right}) {
        double cut = filterHz(patch, t, tone.length, hz) * (0.9 + 0.1 * tone.velocity);
        filter[0].tune(cut, patch.resonance);
        filter[1].tune(cut, 0.3);
    }
}

// The next sample of both sides.
void sound(Voice& voice, const Patch& patch, double& left, double& right) {
    double l = 0.0, r = 0.0;
    for (int u = 0; u < patch.unison; ++u) {
        double& phase = voice.phase[u];
        double increment = voice.increment[u];
        double v = patch.saw * sawtooth(phase, increment);
        if (patch.square > 0.0) {
            double half = phase < 0.5 ? phase + 0.5 : phase - 0.5;
            v += patch.square * (sawtooth(phase, increment) - sawtooth(half, increment));
        }
        phase += increment;
        phase -= phase >= 1.0 ? 1.0 : 0.0;
        double side = patch.unison > 1 ? (u % 2 ? patch.spread : -patch.spread) : 0.0;
        l += v * (1.0 - side);
        r += v * (1.0 + side);
    }
    double sub = patch.sub * std::sin(kTau * voice.subPhase);
    voice.subPhase += voice.subIncrement - (voice.subPhase >= 1.0 ? 1.0 : 0.0);
    voice.left[0].feed(l);
    voice.left[1].feed(voice.left[0].low);
    voice.right[0].feed(r);
    voice.right[1].feed(voice.right[0].low);
    left = voice.left[1].low + sub;
    right = voice.right[1].low + sub;
    if (patch.drive > 0.0) {
        left = std::tanh(left * (1.0 + patch.drive)) / (1.0 + 0.4 * patch.drive);
        right = std::tanh(right * (1.0 + patch.drive)) / (1.0 + 0.4 * patch.drive);
    }
}

} // namespace

void mixIn(Part& part, int64_t frame, double value, double pan) {
    size_t i = static_cast<size_t>(frame % kFrames);
    double angle = (std::clamp(pan, -1.0, 1.0) + 1.0) * kTau / 8.0;
    part.left[i] += static_cast<float>(value * std::numbers::sqrt2 * std::cos(angle));
    part.right[i] += static_cast<float>(value * std::numbers::sqrt2 * std::sin(angle));
}

void addVoice(Song& song, PartId id, const Patch& patch, const Tone& tone) {
    constexpr int kBlock = 16; // filter and pitch move once a block
    Voice voice;
    Noise noise{static_cast<uint32_t>(frameOf(tone.start) * 131 + tone.key * 7919 + 1)};
    for (double& p : voice.phase) {
        p = patch.unison > 1 ? 0.5 + 0.5 * noise.next() : 0.5;
    }
    int first = frameOf(tone.start), count = frameOf(tone.length + patch.release);
    double loud = patch.gain * tone.velocity / std::sqrt(static_cast<double>(patch.unison));
    Part& part = song.parts[id];
    for (int i = 0; i < count; ++i) {
        double t = static_cast<double>(i) / kRate;
        if (i % kBlock == 0) {
            tune(voice, patch, tone, t);
        }
        double l = 0.0, r = 0.0;
        sound(voice, patch, l, r);
        double level = envelope(patch, t, tone.length) * loud;
        mixIn(part, first + i, 0.5 * level * (l + r), tone.pan);
        size_t place = static_cast<size_t>((first + i) % kFrames);
        part.left[place] += static_cast<float>(0.5 * level * (l - r));
        part.right[place] += static_cast<float>(0.5 * level * (r - l));
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
            double bend = 0.9 * std::exp(-t / (0.35 * ring)) * std::sin(kTau * 2.0 * hz * t) +
                          0.35 * std::exp(-t / 0.03) * std::sin(kTau * 7.0 * hz * t);
            double value = 0.7 * level * std::sin(kTau * hz * t + bend);
            mixIn(song.parts[id], first + i, value, tone.pan + 0.45 * side);
        }
    }
}
