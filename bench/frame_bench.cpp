// What a frame costs: the player's share beside the bare GL calls, first draws, loop wraps, resolution.
#include "bench_show.h"

#include "gpu/program_table.h"
#include "timeline/frame.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <ctime>
#include <string>
#include <vector>

namespace {

constexpr int kSide = 16; // pixels; small, so that the picture costs little beside the calls
constexpr int kOverlays = 4;
constexpr int kDepth = 5; // of nested composites

// Enough work for a driver's compiler to feel.
constexpr const char* kFragment = "void main() {\n"
                                  "    vec2 p = vUV * uResolution / 7.0;\n"
                                  "    float v = sin(p.x + uTime) + sin(p.y * 1.3 - uTime) + sin(length(p) * 0.7);\n"
                                  "    colour = vec4(0.5 + 0.5 * cos(v + vec3(0.0, 2.1, 4.2)), uAlpha);\n"
                                  "}\n";

std::string entryJson(const std::string& type, double start, double duration, int layer,
                      const std::string& scene = "one") {
    return "{\"id\": \"" + type + "-" + std::to_string(layer) + "\", \"type\": \"" + type + "\", \"scene\": \"" +
           scene + "\", \"start\": " + std::to_string(start) + ", \"duration\": " + std::to_string(duration) +
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

// A show on the stage, to be drawn frame by frame.
struct Playing {
    Stage& stage;
    Timeline timeline;
    Clocks clocks;
    PlayScratch scratch;
    Moment moment;
    PlayLog log;
};

Playing load(const RuntimeConfig& config, bool warm = true) {
    Stage& stage = openContext(kSide, kSide);
    Playing playing = {stage, loadTimeline(stage, config, kSide, kSide), {}, {}, {}, {}};
    makeTransition(stage, config.baseDir, kSide, kSide);
    if (warm) warmUpTimeline(stage, stage.parts.back(), playing.timeline, kSide, kSide);
    resetClocks(playing.clocks, playing.timeline);
    return playing;
}

// The next show finds an empty stage, but the programs that the driver has seen.
void unload(Playing& playing) {
    for (Effect& effect : playing.stage.parts.back().effects) releaseEffect(effect);
    playing.stage.parts.clear();
    playing.stage.transition = {};
}

void drawFrame(Playing& playing, float t) {
    resolveMoment(playing.timeline, t, playing.stage.transition.program, playing.scratch, playing.moment);
    if (playing.moment.inTransition) {
        logTransition(playing.log, playing.timeline, t, playing.scratch.transition);
    } else {
        logPlayState(playing.log, playing.timeline, t, playing.scratch.state);
    }
    runClocks(playing.clocks, playing.timeline, 0.001f, playing.moment);
    drawMoment(playing.stage, playing.stage.parts.back(), playing.moment, kSide, kSide);
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
    Playing playing = load(config);
    float t = 0.0f;
    for (auto _ : state) {
        beginFrame();
        drawFrame(playing, t += 0.001f);
        glFinish();
    }
    unload(playing);
}
BENCHMARK(playerFrame)->Name("frame/player");

// The same picture by the calls that nobody could leave out.
void bareFrame(benchmark::State& state) {
    const Quad& quad = openContext(kSide, kSide).device.quad;
    BenchShow show;
    struct Layer {
        Program program;
        GLint time, alpha, resolution;
    };
    std::vector<Layer> layers;
    const RuntimeConfig config = stackedShow(show);
    for (const TimelineEntry& entry : config.entries) {
        const auto read = [](const std::string& path) {
            std::ifstream file(path, std::ios::binary);
            return std::string(std::istreambuf_iterator<char>(file), {});
        };
        const ShaderPaths paths = shaderPathsOf(entry, config);
        Program program = linkProgram(read(paths.vertex), read(paths.fragment), "bare");
        const GLuint handle = program.handle;
        layers.push_back({std::move(program), gl.GetUniformLocation(handle, "uTime"),
                          gl.GetUniformLocation(handle, "uAlpha"), gl.GetUniformLocation(handle, "uResolution")});
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
            gl.UseProgram(layers[i].program.handle);
            gl.Uniform2f(layers[i].resolution, kSide, kSide);
            gl.Uniform1f(layers[i].time, t);
            gl.Uniform1f(layers[i].alpha, 0.5f);
            drawQuad(quad);
        }
        glFinish();
    }
    for (Layer& layer : layers) deleteProgram(layer.program);
}
BENCHMARK(bareFrame)->Name("frame/bare calls");

// The first frame after loading, with a shader that the driver has never seen; loading is not timed.
void firstFrame(benchmark::State& state, bool warm) {
    openContext(kSide, kSide);
    static int unique = static_cast<int>(std::time(nullptr) % 100000) * 100; // drivers keep caches on disk
    for (auto _ : state) {
        BenchShow show;
        const std::string type = "fresh" + std::to_string(++unique);
        std::string fragment = kFragment;
        fragment.replace(fragment.find("7.0"), 3, "(7.0 + " + std::to_string(unique) + ".0 * 1e-7)");
        show.writeShader(type, fragment);
        const RuntimeConfig config = show.load("{\"entries\": [" + entryJson(type, 0.0, 10.0, 0) + ", " +
                                               entryJson(type, 0.0, 10.0, 1) + "]}");
        Playing playing = load(config, warm);
        glFinish();

        const auto start = std::chrono::steady_clock::now();
        beginFrame();
        drawFrame(playing, 1.0f);
        glFinish();
        state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        unload(playing);
    }
}
BENCHMARK_CAPTURE(firstFrame, warm, true)
    ->Name("scene/first frame")
    ->UseManualTime()
    ->Iterations(20)
    ->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(firstFrame, cold, false)
    ->Name("scene/first frame without warm-up")
    ->UseManualTime()
    ->Iterations(20)
    ->Unit(benchmark::kMicrosecond);

void steadyFrame(benchmark::State& state) {
    openContext(kSide, kSide);
    BenchShow show;
    show.writeShader("steady", kFragment);
    const RuntimeConfig config = show.load("{\"entries\": [" + entryJson("steady", 0.0, 10.0, 0) + ", " +
                                           entryJson("steady", 0.0, 10.0, 1) + "]}");
    Playing playing = load(config);
    for (auto _ : state) {
        beginFrame();
        drawFrame(playing, 1.0f);
        glFinish();
    }
    unload(playing);
}
BENCHMARK(steadyFrame)->Name("scene/steady frame")->Unit(benchmark::kMicrosecond);

// What a loop does at its end: everything begins anew, and the log says so.
void loopWrap(benchmark::State& state) {
    openContext(kSide, kSide);
    BenchShow show;
    show.writeShader("layer", kFragment);
    std::string entries;
    for (int i = 0; i < state.range(0); ++i) entries += (i ? ", " : "") + entryJson("layer", 0.1 * i, 1.0, i % 5);
    const RuntimeConfig config = show.load("{\"entries\": [" + entries + "]}");
    Playing playing = load(config);
    for (auto _ : state) {
        StagePart& part = playing.stage.parts.back();
        logAgain(part.log);
        resetEffects(part);
        resetClocks(playing.clocks, playing.timeline);
        glFinish();
    }
    unload(playing);
}
BENCHMARK(loopWrap)->Name("scene/loop wrap")->Unit(benchmark::kMicrosecond)->Arg(200)->Arg(1000);

// --- Passes through targets ---

constexpr const char* kMixFragment =
    "#version 330 core\nin vec2 vUV;\nout vec4 colour;\nuniform sampler2D texA, texB;\nuniform float progress;\n"
    "uniform float softness;\nuniform int effectId;\nuniform vec2 screenSize;\n"
    "void main() { colour = mix(texture(texA, vUV), texture(texB, vUV), progress); }\n";

void writeMixer(const BenchShow& show) {
    show.write("assets/shaders/transition/Transition.vert", kQuadVertexSource);
    show.write("assets/shaders/transition/Transition.frag", kMixFragment);
}

void transitionFrame(benchmark::State& state) {
    openContext(kSide, kSide);
    BenchShow show;
    writeMixer(show);
    show.writeShader("layer", kFragment);
    const RuntimeConfig config = show.load("{\"entries\": [" + entryJson("layer", 0.0, 1000.0, 0, "one") + ", " +
                                           entryJson("layer", 0.0, 1000.0, 0, "two") + "]}");
    Playing playing = load(config);
    float t = 0.0f;
    for (auto _ : state) {
        beginFrame();
        drawFrame(playing, t += 0.001f);
        glFinish();
    }
    unload(playing);
}
BENCHMARK(transitionFrame)->Name("passes/transition, player");

// `depth` blends around one shader, each mixing it with the same shader once more.
void nestedBlend(benchmark::State& state) {
    openContext(kSide, kSide);
    BenchShow show;
    writeMixer(show);
    show.writeShader("layer", kFragment);
    std::string json = R"({"type": "layer", "params": {"alpha": 0.5}})";
    for (int i = 0; i < kDepth; ++i) {
        json =
            R"({"type": "blend", "duration": 1000, "params": {"blendDuration": 1000, "target": {"type": "layer"}, "source": )" +
            json + "}}";
    }
    const RuntimeConfig config = show.load("{\"entries\": [" + json + "]}");
    Playing playing = load(config);
    for (auto _ : state) {
        beginFrame();
        drawFrame(playing, 1.0f);
        glFinish();
    }
    unload(playing);
}
BENCHMARK(nestedBlend)->Name("passes/five blends deep, player");

// Programs and targets of the bare loops below.
struct BarePasses {
    Quad quad;
    Program shader, mix;
    GLint time = -1, alpha = -1, resolution = -1, progress = -1;
    std::vector<RenderTarget> targets;
};

BarePasses makeBarePasses(int targets) {
    BarePasses bare;
    bare.quad = openContext(kSide, kSide).device.quad;
    bare.shader = linkProgram(kQuadVertexSource,
                              std::string("#version 330 core\nin vec2 vUV;\nout vec4 colour;\nuniform float uTime;\n"
                                          "uniform float uAlpha;\nuniform vec2 uResolution;\n") +
                                  kFragment,
                              "bare");
    bare.mix = linkProgram(kQuadVertexSource, kMixFragment, "bare");
    bare.time = gl.GetUniformLocation(bare.shader.handle, "uTime");
    bare.alpha = gl.GetUniformLocation(bare.shader.handle, "uAlpha");
    bare.resolution = gl.GetUniformLocation(bare.shader.handle, "uResolution");
    bare.progress = gl.GetUniformLocation(bare.mix.handle, "progress");
    gl.UseProgram(bare.mix.handle);
    gl.Uniform1i(gl.GetUniformLocation(bare.mix.handle, "texB"), 1);
    for (int i = 0; i < targets; ++i) bare.targets.push_back(createRenderTarget(kSide, kSide));
    return bare;
}

void bareShaderPass(const BarePasses& bare, const RenderTarget& target, float t) {
    bindTarget(target);
    glClearColor(0.0f, 0.0f, 0.0f, 0.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    gl.UseProgram(bare.shader.handle);
    gl.Uniform2f(bare.resolution, kSide, kSide);
    gl.Uniform1f(bare.time, t);
    gl.Uniform1f(bare.alpha, 0.5f);
    drawQuad(bare.quad);
}

void bareMixPass(const BarePasses& bare, GLuint framebuffer, GLuint from, GLuint to) {
    gl.BindFramebuffer(GL_FRAMEBUFFER, framebuffer);
    glViewport(0, 0, kSide, kSide);
    gl.UseProgram(bare.mix.handle);
    gl.Uniform1f(bare.progress, 0.5f);
    gl.ActiveTexture(GL_TEXTURE0);
    glBindTexture(GL_TEXTURE_2D, from);
    gl.ActiveTexture(GL_TEXTURE1);
    glBindTexture(GL_TEXTURE_2D, to);
    drawQuad(bare.quad);
}

void deleteBarePasses(BarePasses& bare) {
    deleteProgram(bare.shader);
    deleteProgram(bare.mix);
    for (RenderTarget& target : bare.targets) deleteTarget(target);
}

void bareTransition(benchmark::State& state) {
    openContext(kSide, kSide);
    BarePasses bare = makeBarePasses(2);
    glDisable(GL_BLEND);
    float t = 0.0f;
    for (auto _ : state) {
        t += 0.001f;
        beginFrame();
        for (const RenderTarget& target : bare.targets) bareShaderPass(bare, target, t);
        bareMixPass(bare, 0, bare.targets[0].texture, bare.targets[1].texture);
        glFinish();
    }
    deleteBarePasses(bare);
}
BENCHMARK(bareTransition)->Name("passes/transition, bare calls");

void bareNestedBlend(benchmark::State& state) {
    openContext(kSide, kSide);
    BarePasses bare = makeBarePasses(2 * kDepth); // two a level, the last level's first
    glDisable(GL_BLEND);
    float t = 0.0f;
    for (auto _ : state) {
        t += 0.001f;
        beginFrame();
        bareShaderPass(bare, bare.targets[0], t);
        for (int level = 0; level < kDepth; ++level) {
            bareShaderPass(bare, bare.targets[2 * level + 1], t);
            const GLuint outer = level + 1 < kDepth ? bare.targets[2 * level + 2].framebuffer : 0;
            bareMixPass(bare, outer, bare.targets[2 * level].texture, bare.targets[2 * level + 1].texture);
        }
        glFinish();
    }
    deleteBarePasses(bare);
}
BENCHMARK(bareNestedBlend)->Name("passes/five blends deep, bare calls");

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
        timeline.entries.push_back(entry);
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
