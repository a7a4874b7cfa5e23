// How fast a large show description parses: a generated one of about 1 MB, many times what shows have.
#include "foundation/json.h"

#include <benchmark/benchmark.h>

#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <string>

namespace {

constexpr size_t kShowBytes = 1 << 20;

#if defined(__GNUC__)
__attribute__((format(printf, 2, 3)))
#endif
void appendFormatted(std::string& text, const char* format, ...) {
    char line[512];
    va_list arguments;
    va_start(arguments, format);
    int length = std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    text.append(line, static_cast<size_t>(length));
}

void appendEntry(std::string& text, int scene, int entry) {
    static const char* const kTypes[] = {"shader", "text", "kineticText", "image", "composite", "caption"};
    int n = scene * 31 + entry * 7;
    appendFormatted(text, "        {\n          \"id\": \"scene%d_entry%d\",\n", scene, entry);
    appendFormatted(text, "          \"type\": \"%s\",\n", kTypes[n % 6]);
    appendFormatted(text, "          \"start\": %d.%03d, \"duration\": %d.5, ", n % 240, n % 1000, 2 + n % 9);
    appendFormatted(text, "\"layer\": %d, \"overlay\": %s,\n", entry, entry > 0 ? "true" : "false");
    appendFormatted(text, "          \"shader\": \"shaders/effects/tunnel_%d.frag\",\n", n % 60);
    appendFormatted(text, "          \"channels\": [\"@noise\", \"assets/images/plate_%d.png\", null, null],\n",
                    n % 40);
    appendFormatted(text, "          \"params\": {\n            \"alpha\": 0.%d, ", 1 + n % 9);
    appendFormatted(text, "\"timeScale\": 1.25, \"speed\": -%d.%02d,\n", n % 4, n % 100);
    appendFormatted(text, "            \"color\": [0.%03d, 0.%03d, %.6f, 1], ", n % 1000, n * 3 % 1000,
                    1.0 / (1 + n % 97));
    appendFormatted(text, "\"seed\": %d, \"glow\": 3.5e-2,\n", n * 7919);
    appendFormatted(text, "            \"text\": \"greetings fly out to\\neveryone on row %d\", ", entry);
    text += "\"blendMode\": \"additive\"\n          }\n        }";
}

std::string makeShow() {
    std::string text = "{\n  \"schemaVersion\": \"native-runtime/v1\",\n"
                       "  \"globals\": {\"width\": 1920, \"height\": 1080, \"fullscreen\": true},\n"
                       "  \"scenes\": [\n";
    for (int scene = 0; text.size() < kShowBytes; ++scene) {
        text += scene > 0 ? ",\n" : "";
        appendFormatted(text, "    {\n      \"id\": \"scene%d\", \"enabled\": true,\n", scene);
        text += "      \"transition\": {\"type\": \"fade\", \"duration\": 0.75},\n      \"entries\": [\n";
        for (int entry = 0; entry < 6; ++entry) {
            text += entry > 0 ? ",\n" : "";
            appendEntry(text, scene, entry);
        }
        text += "\n      ]\n    }";
    }
    return text + "\n  ]\n}\n";
}

void parseShow(benchmark::State& state) {
    std::string text = makeShow();
    for (auto _ : state) {
        JsonValue root = parseJson(text);
        benchmark::DoNotOptimize(root);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * text.size()));
}
BENCHMARK(parseShow)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
