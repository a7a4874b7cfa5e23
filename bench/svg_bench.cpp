// How fast a busy logo becomes a mask: a made-up one of 500 KB, a hundred times what most logos have.
#include "picture/glow_mask.h"
#include "picture/svg_mask.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <random>
#include <string>

namespace {

constexpr size_t kLogoBytes = 500'000;

// Rings of curved petals, one path each, in numbers as drawing programs write them.
std::string makeLogo() {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> unit(0.0, 1.0);
    std::string text = "<svg viewBox=\"0 0 1000 500\">\n";
    while (text.size() < kLogoBytes) {
        char piece[160];
        const double x = 1000.0 * unit(random), y = 500.0 * unit(random), radius = 5.0 + 60.0 * unit(random);
        std::snprintf(piece, sizeof piece, "<path fill=\"#fff\" d=\"M%.2f,%.2f", x + radius, y);
        text += piece;
        const int petals = 5 + static_cast<int>(random() % 24);
        for (int i = 1; i <= petals; ++i) {
            const double from = 6.2831853 * (i - 1) / petals, to = 6.2831853 * i / petals;
            const double bulge = radius * (0.6 + unit(random));
            std::snprintf(piece, sizeof piece, "c%.2f %.2f,%.2f %.2f,%.2f %.2f", bulge * std::cos(from) * 0.4,
                          bulge * std::sin(from) * 0.4, bulge * std::cos(to) * 0.5, bulge * std::sin(to) * 0.5,
                          radius * (std::cos(to) - std::cos(from)), radius * (std::sin(to) - std::sin(from)));
            text += piece;
        }
        text += "z\"/>\n";
    }
    return text + "</svg>\n";
}

SvgDrawing parseLogo(const std::string& text) {
    SvgDrawing drawing;
    size_t position = 0, points = 0;
    std::string_view data;
    while (nextPathData(text, position, data)) parsePathData(data, drawing.contours, points);
    readViewBox(text, drawing.bounds);
    return drawing;
}

void parse(benchmark::State& state) {
    const std::string text = makeLogo();
    for (auto _ : state) benchmark::DoNotOptimize(parseLogo(text));
    size_t points = 0;
    for (const SvgContour& contour : parseLogo(text).contours) points += contour.size();
    state.counters["points"] = static_cast<double>(points);
}
BENCHMARK(parse)->Name("svg/parse")->Unit(benchmark::kMillisecond);

void fill(benchmark::State& state) {
    const SvgDrawing drawing = parseLogo(makeLogo());
    SvgMask mask;
    for (auto _ : state) {
        fillMask(drawing, static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), mask);
        benchmark::DoNotOptimize(mask);
    }
}
BENCHMARK(fill)->Name("svg/fill")->Unit(benchmark::kMillisecond)->Args({1024, 512})->Args({4096, 4096});

// What any filling has to do: the mask made and written once.
void writeMask(benchmark::State& state) {
    SvgMask mask;
    for (auto _ : state) {
        mask.pixels = std::vector<uint8_t>(static_cast<size_t>(state.range(0) * state.range(1)) * 4, 255);
        benchmark::DoNotOptimize(mask);
    }
}
BENCHMARK(writeMask)->Name("svg/write")->Unit(benchmark::kMillisecond)->Args({1024, 512})->Args({4096, 4096});

void glow(benchmark::State& state) {
    SvgMask mask;
    fillMask(parseLogo(makeLogo()), static_cast<int>(state.range(0)), static_cast<int>(state.range(1)), mask);
    for (auto _ : state) benchmark::DoNotOptimize(makeGlowMask(mask));
}
BENCHMARK(glow)->Name("svg/glow")->Unit(benchmark::kMillisecond)->Args({1024, 512})->Args({4096, 4096});

} // namespace

BENCHMARK_MAIN();
