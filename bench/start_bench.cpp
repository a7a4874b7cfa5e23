// Process start to the end after one frame, the player beside the least program with one shader.
#include "bench_show.h"

#include <benchmark/benchmark.h>

#include <spawn.h>
#include <sys/wait.h>

#include <fcntl.h>
#include <string>
#include <vector>

extern char** environ;

namespace {

// Runs a program to its end, its standard output thrown away; false unless it ends with 0.
bool runProgram(std::vector<std::string> arguments) {
    std::vector<char*> pointers;
    for (std::string& argument : arguments) pointers.push_back(argument.data());
    pointers.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 1, "/dev/null", O_WRONLY, 0);
    pid_t child = 0;
    const int failed = posix_spawn(&child, pointers[0], &actions, nullptr, pointers.data(), environ);
    posix_spawn_file_actions_destroy(&actions);
    int status = 1;
    return !failed && waitpid(child, &status, 0) == child && status == 0;
}

void startPlayer(benchmark::State& state) {
    BenchShow show;
    show.writeShader("lone", "void main() { colour = vec4(0.5 + 0.5 * sin(vUV.xyx * 9.0), 1.0); }\n");
    const std::string config = show.write("config.json", R"({"entries": [{"type": "lone"}]})");
    for (auto _ : state) {
        if (!runProgram(
                {PLAYER_PATH, config, "-o", show.baseDir + "/frame.rgba", "--size", "320x180", "--still", "0"})) {
            state.SkipWithError("the player failed");
            return;
        }
    }
}
BENCHMARK(startPlayer)->Name("start/player")->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

void startMinimal(benchmark::State& state) {
    BenchShow show;
    for (auto _ : state) {
        if (!runProgram({MINIMAL_PATH, show.baseDir + "/frame.rgba"})) {
            state.SkipWithError("the minimal program failed");
            return;
        }
    }
}
BENCHMARK(startMinimal)->Name("start/minimal program")->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(20);

} // namespace

BENCHMARK_MAIN();
