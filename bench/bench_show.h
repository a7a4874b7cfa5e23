// A show in a temporary folder, and a context without a display to play it in.
#pragma once

#include "config/runtime_config.h"
#include "effects/stage.h"
#include "foundation/log.h"
#include "gpu/gl_functions.h"
#include "gpu/shader_lookup.h"
#include "platform/window.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

inline void silenceLog() {
    setLogStream(std::fopen("/dev/null", "w"));
}

// Opens the one context of the process, with an empty stage.
inline Stage& openContext(int width, int height) {
    static Surface* surface = nullptr;
    static Stage stage;
    if (surface) return stage;
    surface = createHeadlessSurface(width, height);
    if (!surface || !loadGlFunctions(glLookup(surface))) std::abort();
    stage.device = createDevice();
    return stage;
}

// Stays behind in the system's folder for temporary files.
class BenchShow {
public:
    BenchShow() {
        std::string pattern = (std::filesystem::temp_directory_path() / "bench-show-XXXXXX").string();
        baseDir = mkdtemp(pattern.data());
    }
    ~BenchShow() {
        std::error_code ignored;
        std::filesystem::remove_all(baseDir, ignored);
    }

    std::string write(const std::string& name, const std::string& bytes) const {
        const std::filesystem::path path = std::filesystem::path(baseDir) / name;
        std::error_code ignored;
        std::filesystem::create_directories(path.parent_path(), ignored);
        std::ofstream(path, std::ios::binary) << bytes;
        return path.string();
    }

    void writeShader(const std::string& type, const std::string& fragment) const {
        const std::string stem = "assets/shaders/" + type + "/" + type;
        write(stem + ".vert", "#version 330 core\nlayout(location=0) in vec2 aPos;\nlayout(location=1) in vec2 aUV;\n"
                              "out vec2 vUV;\nvoid main() { vUV = aUV; gl_Position = vec4(aPos, 0.0, 1.0); }\n");
        write(stem + ".frag", "#version 330 core\nin vec2 vUV;\nout vec4 colour;\nuniform float uTime;\n"
                              "uniform float uAlpha;\nuniform vec2 uResolution;\n" +
                                  fragment);
    }

    RuntimeConfig load(const std::string& json) const { return loadRuntimeConfig(write("config.json", json)); }

    std::string baseDir;
};
