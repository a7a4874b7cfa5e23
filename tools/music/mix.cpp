#include "mix.h"

#include "filter.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

double fromDb(double db) {
    return std::pow(10.0, db / 20.0);
}

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
            double fed = 0.5 * in[1][place] + (c == 0 ? in[0][place] : 0.0) + 0.52 * heard[1 - c];
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

} // namespace

void mix(Song& song, const std::string& only, Ring (&master)[2]) {
    constexpr double kLoudness = 1.16, kCeiling = 0.69, kShelf = 0.35; // kShelf: added share above 1.5 kHz
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
