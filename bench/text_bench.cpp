// What text costs a frame: kinetic text's geometry beside copying the same vertices, and its whole draw
// beside uploading and drawing the same triangles.
#include "bench_show.h"

#include "foundation/json.h"
#include "gpu/program.h"
#include "gpu/render_target.h"
#include "text/kinetic_text.h"

#include <benchmark/benchmark.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kCharacters = 2000;
constexpr int kSide = 16; // pixels of the output; small, so that the triangles cost the CPU and not the picture

// Every printable ASCII character in cells of 32 x 32.
ColorFont makeFont() {
    ColorFont font;
    font.rows = 6;
    font.textureWidth = 512;
    font.textureHeight = 192;
    for (char c = ' '; c <= '~'; ++c) {
        const int i = c - ' ';
        const float column = static_cast<float>(i % 16), row = static_cast<float>(i / 16);
        font.chars += c;
        font.glyphs[static_cast<unsigned char>(c)] = {column / 16, 1 - (row + 1) / 6, (column + 1) / 16, 1 - row / 6,
                                                      32.0f};
    }
    return font;
}

// Words of seven letters in lines of 80.
KineticTextParams makeParams(const std::string& animation, bool decorated) {
    std::string text;
    int letters = 0;
    for (int i = 0; letters < kCharacters; ++i) {
        const bool isBreak = i % 8 == 7;
        text += isBreak ? (i % 80 == 79 ? "\\n" : " ") : std::string(1, static_cast<char>('A' + i % 26));
        letters += isBreak ? 0 : 1;
    }
    const std::string flag = decorated ? "true" : "false";
    return parseKineticTextParams(parseJson("{\"text\": \"" + text + "\", \"animation\": \"" + animation +
                                            "\", \"revealMode\": \"none\", \"glitchEnabled\": " + flag +
                                            ", \"outlineGlowEnabled\": " + flag + "}"));
}

void setGlyphRate(benchmark::State& state) {
    state.counters["glyphs/s"] = benchmark::Counter(static_cast<double>(state.iterations()) * kCharacters,
                                                    benchmark::Counter::kIsRate);
}

void geometry(benchmark::State& state, const char* animation, bool decorated) {
    const KineticTextParams params = makeParams(animation, decorated);
    const KineticLayout layout = layoutKineticText(params, makeFont());
    KineticGeometry built;
    reserveKineticGeometry(params, layout, built);
    float time = 0.2f;
    for (auto _ : state) {
        buildKineticGeometry(params, layout, time += 0.016f, 1920, 1080, built);
        benchmark::DoNotOptimize(built.glyphs.data());
        benchmark::ClobberMemory();
    }
    setGlyphRate(state);
}
BENCHMARK_CAPTURE(geometry, plain, "none", false);
BENCHMARK_CAPTURE(geometry, wave, "wave", false);
BENCHMARK_CAPTURE(geometry, wave with glitch and glow, "wave", true);
BENCHMARK_CAPTURE(geometry, explode with glitch and glow, "explode", true);
BENCHMARK_CAPTURE(geometry, scramble with glitch and glow, "scramble", true);

void copyVertices(benchmark::State& state, bool decorated) {
    const KineticTextParams params = makeParams("wave", decorated);
    KineticGeometry built;
    buildKineticGeometry(params, layoutKineticText(params, makeFont()), 1.0f, 1920, 1080, built);
    std::vector<float> glyphs(built.glyphs.size()), glow(built.glow.size());
    for (auto _ : state) {
        std::memcpy(glyphs.data(), built.glyphs.data(), glyphs.size() * sizeof(float));
        if (decorated) std::memcpy(glow.data(), built.glow.data(), glow.size() * sizeof(float));
        benchmark::DoNotOptimize(glyphs.data());
        benchmark::DoNotOptimize(glow.data());
        benchmark::ClobberMemory();
    }
    setGlyphRate(state);
}
BENCHMARK_CAPTURE(copyVertices, plain, false);
BENCHMARK_CAPTURE(copyVertices, with glow, true);

// A frame of the text, or of the vertices that it had at one moment.
void frame(benchmark::State& state, bool isBuilt) {
    Stage& stage = openContext(kSide, kSide);
    Program program = linkProgram(
        "#version 330 core\nlayout(location = 0) in vec2 p;\nlayout(location = 1) in vec2 t;\nlayout(location = 2) in float a;\n"
        "out vec3 v;\nuniform vec2 iResolution;\n"
        "void main() { v = vec3(t, a); gl_Position = vec4(p / iResolution * 2.0 - 1.0, 0.0, 1.0); }\n",
        "#version 330 core\nin vec3 v;\nout vec4 c;\nuniform sampler2D uFontTexture;\n"
        "void main() { c = texture(uFontTexture, v.xy) * v.z; }\n",
        "bench");
    ColorFont font = makeFont();
    const std::vector<unsigned char> texels(static_cast<size_t>(font.textureWidth) * font.textureHeight * 4, 200);
    glGenTextures(1, &font.texture);
    glBindTexture(GL_TEXTURE_2D, font.texture);
    glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, font.textureWidth, font.textureHeight, 0, GL_RGBA, GL_UNSIGNED_BYTE,
                 texels.data());
    KineticText text;
    createKineticText(text, makeParams("wave", true), std::move(font), program);
    const UniformValues values = makeUniformValues(stage.device.programs, program);
    Draw draw;
    draw.width = draw.height = kSide;
    draw.time = 0.2;
    drawKineticText(text, program, values, draw);
    for (auto _ : state) {
        if (isBuilt) {
            draw.time += 0.016;
            drawKineticText(text, program, values, draw);
        } else {
            gl.UseProgram(program.handle);
            drawVertexStream(text.stream, text.geometry.glow);
            drawVertexStream(text.stream, text.geometry.glyphs);
        }
        glFinish();
    }
    releaseKineticText(text);
    deleteProgram(program);
}
BENCHMARK_CAPTURE(frame, player, true);
BENCHMARK_CAPTURE(frame, same vertices uploaded and drawn, false);

} // namespace

int main(int argc, char** argv) {
    silenceLog();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
