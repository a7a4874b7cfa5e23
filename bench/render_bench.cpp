// Offline rendering beside the loop that anyone would write: draw, read RGBA back, pipe it to ffmpeg.
#include "bench_show.h"

#include "gpu/program.h"

#include <benchmark/benchmark.h>

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

namespace {

constexpr int kWidth = 1280, kHeight = 720, kFps = 60;

struct Shader {
    const char* name;
    const char* source;
    int frames;
};

constexpr Shader kShaders[] = {
    {"cheap", "void main() { colour = vec4(0.5 + 0.5 * sin(vUV.xyx * 9.0 + uTime), 1.0); }\n", 240},
    {"heavy",
     "float far(vec3 p) { return length(mod(p, 2.0) - 1.0) - 0.4 + 0.05 * sin(9.0 * p.x) * sin(9.0 * p.y); }\n"
     "void main() {\n"
     "    vec3 ray = normalize(vec3(vUV - 0.5, 0.7)), p = vec3(0.3 * sin(uTime), 0.1, uTime);\n"
     "    for (int i = 0; i < 24; ++i) p += ray * far(p) * 0.8;\n"
     "    colour = vec4(fract(p * 0.5) * exp(-0.1 * distance(p, vec3(0.0, 0.0, uTime))), 1.0);\n"
     "}\n",
     90}};

// Where frames go: an empty preset stands for raw frames that nobody keeps.
constexpr const char* kPresets[] = {"", "ultrafast", "veryfast", "fast"};

// The least loop; a process of its own, as the player is one.
int renderPlainly(const std::string& folder, int frames, const std::string& preset) {
    Surface* surface = createHeadlessSurface(kWidth, kHeight);
    if (!surface || !loadGlFunctions(glLookup(surface))) return 1;
    const Quad quad = createQuad();
    const auto read = [&](const std::string& name) {
        std::ifstream file(folder + name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(file), {});
    };
    const std::string stem = "/assets/shaders/lone/lone";
    const Program program = linkProgram(read(stem + ".vert"), read(stem + ".frag"), "lone");
    const GLint time = gl.GetUniformLocation(program.handle, "uTime");
    const std::string size = std::to_string(kWidth) + "x" + std::to_string(kHeight);
    const std::string input = "-f rawvideo -pix_fmt rgba -s " + size + " -r " + std::to_string(kFps) + " -i - ";
    const std::string command = "ffmpeg -v error -y " + input + "-vf vflip -c:v libx264 -preset " + preset +
                                " -crf 18 -pix_fmt yuv420p " + folder + "/plain.mp4";
    std::FILE* output = preset.empty() ? std::fopen("/dev/null", "wb") : popen(command.c_str(), "w");
    if (!output) return 1;
    constexpr size_t kRow = kWidth * 4;
    std::vector<unsigned char> pixels(kRow * kHeight), upright(preset.empty() ? pixels.size() : 0);
    gl.UseProgram(program.handle);
    glViewport(0, 0, kWidth, kHeight);
    for (int frame = 0; frame < frames; ++frame) {
        gl.Uniform1f(time, static_cast<float>(frame) / kFps);
        drawQuad(quad);
        glReadPixels(0, 0, kWidth, kHeight, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
        const std::vector<unsigned char>& picture = upright.empty() ? pixels : upright; // ffmpeg turns them
        for (size_t y = 0; y * kRow < upright.size(); ++y) {
            std::memcpy(&upright[y * kRow], &pixels[(kHeight - 1 - y) * kRow], kRow);
        }
        if (std::fwrite(picture.data(), 1, picture.size(), output) != picture.size()) return 1;
    }
    return preset.empty() ? std::fclose(output) : pclose(output);
}

// Runs a program to its end and adds up the processor time of all that it started; false unless it ends with 0.
bool runProgram(std::vector<std::string> arguments, double& seconds) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (const int stream : {1, 2}) posix_spawn_file_actions_addopen(&actions, stream, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int failed = posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 1;
    rusage usage = {};
    if (failed || wait4(child, &status, 0, &usage) != child) return false;
    for (const timeval& time : {usage.ru_utime, usage.ru_stime}) {
        seconds += static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) * 1e-6;
    }
    return status == 0;
}

void render(benchmark::State& state, const Shader& shader, const std::string& preset, bool withPlayer) {
    BenchShow show;
    show.writeShader("lone", shader.source);
    const std::string config = show.write("config.json", R"({"entries": [{"type": "lone", "duration": 1000}]})");
    const std::string frames = std::to_string(shader.frames);
    const std::string raw = show.baseDir + "/raw.rgba";
    if (symlink("/dev/null", raw.c_str()) != 0) return;
    std::vector<std::string> command = {"/proc/self/exe", "--plain", show.baseDir, frames, preset};
    if (withPlayer) {
        command = {PLAYER_PATH,          config,     "--fps",
                   std::to_string(kFps), "--length", std::to_string(static_cast<double>(shader.frames) / kFps)};
        command.insert(command.end(), {"-o", preset.empty() ? raw : show.baseDir + "/player.mp4"});
        if (!preset.empty()) command.insert(command.end(), {"--ffmpeg-args", "-preset " + preset});
    }
    double seconds = 0.0;
    for (auto _ : state) {
        if (!runProgram(command, seconds)) {
            state.SkipWithError("rendering failed");
            return;
        }
    }
    state.counters["frames/s"] = benchmark::Counter(shader.frames, benchmark::Counter::kIsIterationInvariantRate);
    state.counters["cpu_s"] = benchmark::Counter(seconds, benchmark::Counter::kAvgIterations);
}

// Of times: the run that the rest of the machine disturbed least.
double least(const std::vector<double>& values) {
    return *std::min_element(values.begin(), values.end());
}

} // namespace

int main(int argc, char** argv) {
    if (argc == 5 && std::strcmp(argv[1], "--plain") == 0) {
        return renderPlainly(argv[2], std::atoi(argv[3]), argv[4]);
    }
    benchmark::Initialize(&argc, argv);
    for (const Shader& shader : kShaders) {
        for (const std::string preset : kPresets) {
            for (const bool withPlayer : {true, false}) {
                const std::string name = std::string(shader.name) + "/" + (preset.empty() ? "raw" : preset) + "/" +
                                         (withPlayer ? "player" : "plain_loop");
                benchmark::RegisterBenchmark(name.c_str(), render, shader, preset, withPlayer)
                    ->Unit(benchmark::kMillisecond)
                    ->UseRealTime()
                    ->Iterations(1)
                    ->ComputeStatistics("least", least);
            }
        }
    }
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
