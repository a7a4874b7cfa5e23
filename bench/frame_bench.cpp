// What a frame costs: the player's share beside the bare GL calls, first draws, loop wraps, resolution.
#include "bench_show.h"

#include "gpu/program.h"
#include "timeline/frame.h"

#include <benchmark/benchmark.h>

#include <string>
#include <vector>

namespace {

constexpr int kSide = 16; // pixels; small, so that the picture costs little beside the calls
constexpr int kOverlays = 4;

// Enough work for a driver's compiler to feel.
constexpr const char* kFragment =
    "void main() {\n"
    "    vec2 p = vUV * uResolution / 7.0;\n"
    "    float v = sin(p.x + uTime) + sin(p.y * 1.3 - uTime) + sin(length(p) * 0.7);\n"
    "    colour = vec4(0.5 + 0.5 * cos(v + vec3(0.0, 2.1, 4.2)), uAlpha);\n"
    "}\n";

std::string entryJson(const std::string& type, double start, double duration, int layer, const std::string& scene = "one") {
    return "{\"id\": \"" + type + "-" + std::to_string(layer) + "\", \"type\": \"" + type + "\", \"scene\": \"" + scene +
           "\", \"start\": " + std::to_string(start) + ", \"duration\": " + std::to_string(duration) +
           ", \"layer\": " + std::to_string(layer) + ", \"overlay\": " + (layer > 0 ? "true" : "false") +
           ", \"params\": {\"alpha\": 0.5}}";
}

// A base and its overlays, each with a shader of its own.
RuntimeConfig stackedShow(const BenchShow& show) {
    std::string entries;
    for (int layer = 0; layer <= kOverlays; ++layer) {
        const std::string type = "layer" + std::to_string(layer);
        show.writeShader(type, kFragment);
        entries += (layer ? ", " : "") + entryJson(type, 0.0, 1000.0, layer);
    }
    return show.load("{\"entries\": [" + entries + "]}");
}

void beginFrame() {
    glViewport(0, 0, kSide, kSide);
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDisable(GL_DEPTH_TEST);
}

void playerFrame(benchmark::State& state) {
    openContext(kSide, kSide);
    BenchShow show;
    const RuntimeConfig config = stackedShow(show);
    Timeline timeline;
    PlayState playState;
    PlayLog log;
    loadTimeline(timeline, config, kSide, kSide);
    float t = 0.0f;
    for (auto _ : state) {
        t += 0.001f;
        beginFrame();
        resolvePlayState(timeline, t, playState);
        logPlayState(log, timeline, t, playState);
        drawTimelineFrame(playState, 0.001f, kSide, kSide);
        glFinish();
    }
    releaseTimeline(timeline);
}
BENCHMARK(playerFrame)->Name("frame/player");

// The same picture by the calls that nobody could leave out.
void bareFrame(benchmark::State& state) {
    openContext(kSide, kSide);
    BenchShow show;
    struct Layer {
        GLuint program;
        GLint time, alpha, resolution;
    };
    std::vector<Layer> layers;
    Timeline timeline; // for its sources' sake
    const RuntimeConfig config = stackedShow(show);
    for (const TimelineEntry& entry : config.entries) {
        const auto read = [](const std::string& path) {
            std::ifstream file(path, std::ios::binary);
            return std::string(std::istreambuf_iterator<char>(file), {});
        };
        const GLuint program = linkProgram(read(entry.vertPath), read(entry.fragPath), "bare");
        layers.push_back({program, gl.GetUniformLocation(program, "uTime"), gl.GetUniformLocation(program, "uAlpha"),
                          gl.GetUniformLocation(program, "uResolution")});
    }
    float t = 0.0f;
    for (auto _ : state) {
        t += 0.001f;
        beginFrame();
        for (size_t i = 0; i < layers.size(); ++i) {
            if (i == 0) {
                glDisable(GL_BLEND);
            } else {
                glEnable(GL_BLEND);
                glBlendFunc(GL_SRC_ALPHA, GL_ONE_MINUS_SRC_ALPHA);
            }
            glViewport(0, 0, kSide, kSide);
            gl.UseProgram(layers[i].program);
            gl.Uniform2f(layers[i].resolution, kSide, kSide);
            gl.Uniform1f(layers[i].time, t);
            gl.Uniform1f(layers[i].alpha, 0.5f);
            drawQuad();
        }
        glFinish();
    }
    for (const Layer& layer : layers) deleteProgram(layer.program);
}
BENCHMARK(bareFrame)->Name("frame/bare calls");

// The first frame after loading, with a shader that the driver has never seen; loading is not timed.
void firstFrame(benchmark::State& state) {
    openContext(kSide, kSide);
    static int unique = 0;
    for (auto _ : state) {
        state.PauseTiming();
        BenchShow show;
        const std::string type = "fresh" + std::to_string(++unique);
        show.writeShader(type, "const float kUnique = " + std::to_string(unique) + ".0;\n" + kFragment);
        const RuntimeConfig config = show.load("{\"entries\": [" + entryJson(type, 0.0, 10.0, 0) + ", " + entryJson(type, 0.0, 10.0, 1) + "]}");
        Timeline timeline;
        PlayState playState;
        loadTimeline(timeline, config, kSide, kSide);
        glFinish();
        state.ResumeTiming();
        beginFrame();
        resolvePlayState(timeline, 1.0f, playState);
        drawTimelineFrame(playState, 0.001f, kSide, kSide);
        glFinish();
        state.PauseTiming();
        releaseTimeline(timeline);
        state.ResumeTiming();
    }
}
BENCHMARK(firstFrame)->Name("scene/first frame")->Iterations(20)->Unit(benchmark::kMicrosecond);

void steadyFrame(benchmark::State& state) {
    openContext(kSide, kSide);
    BenchShow show;
    show.writeShader("steady", kFragment);
    const RuntimeConfig config = show.load("{\"entries\": [" + entryJson("steady", 0.0, 10.0, 0) + ", " + entryJson("steady", 0.0, 10.0, 1) + "]}");
    Timeline timeline;
    PlayState playState;
    loadTimeline(timeline, config, kSide, kSide);
    for (auto _ : state) {
        beginFrame();
        resolvePlayState(timeline, 1.0f, playState);
        drawTimelineFrame(playState, 0.001f, kSide, kSide);
        glFinish();
    }
    releaseTimeline(timeline);
}
BENCHMARK(steadyFrame)->Name("scene/steady frame")->Unit(benchmark::kMicrosecond);

// Every effect destroyed and created anew.
void loopWrap(benchmark::State& state) {
    openContext(kSide, kSide);
    BenchShow show;
    const RuntimeConfig config = stackedShow(show);
    Timeline timeline;
    loadTimeline(timeline, config, kSide, kSide);
    for (auto _ : state) {
        loadTimeline(timeline, config, kSide, kSide);
        glFinish();
    }
    releaseTimeline(timeline);
}
BENCHMARK(loopWrap)->Name("scene/loop wrap")->Unit(benchmark::kMicrosecond);

// Base, overlays and the log's key among many entries; nothing is drawn.
void resolution(benchmark::State& state) {
    std::vector<TimelineEntry> entries(static_cast<size_t>(state.range(0)));
    Timeline timeline;
    for (size_t i = 0; i < entries.size(); ++i) {
        RuntimeEntry entry;
        entries[i].id = "entry-" + std::to_string(i);
        entry.entry = &entries[i];
        entry.start = static_cast<float>(i) * 0.1f;
        entry.duration = 0.5f;
        entry.overlay = i % 4 != 0;
        entry.layer = static_cast<int>(i * 7 % 13);
        timeline.entries.push_back(std::move(entry));
    }
    PlayState playState;
    PlayLog log;
    float t = 0.0f;
    for (auto _ : state) {
        t = t < 90.0f ? t + 0.016f : 0.0f;
        resolvePlayState(timeline, t, playState);
        logPlayState(log, timeline, t, playState);
        benchmark::DoNotOptimize(playState.base);
    }
}
BENCHMARK(resolution)->Name("timeline/resolution")->Arg(1000);

} // namespace

int main(int argc, char** argv) {
    silenceLog();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
