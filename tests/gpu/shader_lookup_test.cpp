#include "gpu/shader_lookup.h"
#include "gpu/shader_pack.h"
#include "support/log_capture.h"
#include "support/shader_pack_file.h"
#include "support/temp_show.h"
#include "child.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

constexpr const char* kRoots[] = {"DemoSceneResources/assets/shaders/", "assets/shaders/"};

TimelineEntry entryOf(const TempShow& show, const std::string& type, const std::string& params = "{}") {
    TimelineEntry entry;
    entry.type = type;
    entry.baseDir = show.baseDir;
    entry.params = parseJson(params);
    return entry;
}

// The three paths, relative to the show, with slashes.
std::string pathsOf(const TempShow& show, const TimelineEntry& entry) {
    std::string text;
    for (const std::string& path : {entry.vertPath, entry.fragPath, entry.bufferPath}) {
        const bool below = path.starts_with(show.path(""));
        const std::string relative = below ? path.substr(show.baseDir.size() + 1) : path;
        text += (text.empty() ? "" : " ") + (path.empty() ? "-" : std::filesystem::path(relative).generic_string());
    }
    return text;
}

TEST(ShaderLookup, FindsGlitchShadersByStyle) {
    const struct {
        std::vector<std::string> files; // below "glitch" of root 0 or 1
        const char* style;
        const char* paths; // "0" stands for the glitch directory of root 0
    } cases[] = {
        {{"1GlitchRain.frag", "1Glitch.vert"}, R"("rain")", "1Glitch.vert 1GlitchRain.frag -"},
        {{"0GlitchRain.frag", "0Glitch.vert", "0GlitchRain.vert"}, R"("RAIN")", "0GlitchRain.vert 0GlitchRain.frag -"},
        {{"1CRTTube.frag"}, R"("crttube")", "- 1CRTTube.frag -"},
        // The root is chosen by the fragment shader.
        {{"0Glitch.vert", "0GlitchRain.vert", "1GlitchRain.frag"}, R"("rain")", "- 1GlitchRain.frag -"},
        {{"0GlitchRain.frag", "1GlitchRain.frag", "1Glitch.vert"}, R"("rain")", "- 0GlitchRain.frag -"},
        {{"0Glitch.frag", "0Glitch.vert"}, R"("rains")", "0Glitch.vert 0Glitch.frag -"},
        {{"0Glitch.frag", "0CRTTube.frag"}, R"(["crttube"])", "- 0Glitch.frag -"},
        {{"0Glitch.frag", "0Glitch.vert"}, R"("rain")", "- - -"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.paths);
        const TempShow show;
        for (const std::string& file : c.files) show.write(kRoots[file[0] - '0'] + ("glitch/" + file.substr(1)), "x");
        TimelineEntry entry = entryOf(show, "glitch", std::string("{\"style\":") + c.style + "}");
        resolveShaderSources(entry);
        std::string expected = c.paths;
        for (size_t at = expected.size(); at-- > 0;) {
            if (expected[at] != '0' && expected[at] != '1') continue;
            expected.replace(at, 1, std::string(kRoots[expected[at] - '0']) + "glitch/");
        }
        EXPECT_EQ(pathsOf(show, entry), expected);
    }
}

TEST(ShaderLookup, FindsBuiltinShaders) {
    const char* const builtins[][4] = {
        {"OverLayer", "starfields", "Overlayer.vert", "Overlayer.frag"},
        {"rotozoom", "rotozoom", "OldSchoolRotozoom.vert", "OldSchoolRotozoom.frag"},
        {"rotozoombasic", "rotozoom", "BasiclRotozoom.vert", "BasiclRotozoom.frag"},
        {"lowerthird", "Text", "LowerThird.vert", "LowerThird.frag"},
        {"CREDITROLL", "Text", "LowerThird.vert", "LowerThird.frag"},
        {"shapetext", "Text", "ShapeText.vert", "ShapeText.frag"},
    };
    const TempShow show;
    for (const auto& [name, directory, vertex, fragment] : builtins) {
        SCOPED_TRACE(name);
        const std::string folder = std::string(kRoots[1]) + directory + "/";
        show.write(folder + vertex, "x");
        show.write(folder + fragment, "x");
        TimelineEntry entry = entryOf(show, name);
        resolveShaderSources(entry);
        EXPECT_EQ(pathsOf(show, entry), folder + vertex + " " + folder + fragment + " -");
    }
    // The first root that has the directory wins, whatever is in it.
    show.write(std::string(kRoots[0]) + "rotozoom/OldSchoolRotozoom.frag", "x");
    TimelineEntry entry = entryOf(show, "rotozoom");
    resolveShaderSources(entry);
    EXPECT_EQ(pathsOf(show, entry), "- DemoSceneResources/assets/shaders/rotozoom/OldSchoolRotozoom.frag -");
    EXPECT_EQ(builtinShaderDir(show.baseDir, "overlayers"), ""); // only begins with a name of the table
}

TEST(ShaderLookup, ChoosesAmongTheFilesOfADirectory) {
    const struct {
        const char* name;
        const char* type;
        std::vector<std::string> disk; // below the first root
        std::vector<std::string> pack;
        const char* paths; // below its directory "fx"
    } cases[] = {
        {"named files before the first ones", "fx", {"fx/a.vert", "fx/fx.vert", "fx/a.frag", "fx/FX.frag"}, {},
         "fx.vert FX.frag -"},
        {"else the first ones, ignoring case", "FX", {"fx/b.vert", "fx/A.vert", "fx/C.frag", "fx/b.frag"}, {},
         "A.vert b.frag -"},
        {"buffers are no main pass", "fx", {"fx/BufferB.frag", "fx/aBuffera.frag", "fx/z.frag", "fx/v.vert"}, {},
         "v.vert z.frag aBuffera.frag"},
        {"nothing but a buffer", "fx", {"fx/BufferA.frag"}, {}, "- - BufferA.frag"},
        {"a buffer in a named pair", "fx", {"fx/fx.vert", "fx/fx.frag", "fx/FxBufferA.frag", "fx/FxBufferA2.frag"}, {},
         "fx.vert fx.frag FxBufferA.frag"},
        {"neither other files nor deeper ones", "fx", {"fx/a.txt", "fx/vert", "fx/fx.frag.bak", "fx/in/fx.vert"}, {},
         "- - -"},
        {"upper-case extensions", "fx", {"fx/FX.VERT", "fx/FX.FRAG"}, {}, "FX.VERT FX.FRAG -"},
        {"pack alone", "Fx", {}, {"fx/A.vert", "Fx\\Fx.frag", "fx/deep/bufferA.frag", "fx2/fx.vert"}, "a.vert fx.frag -"},
        {"pack and disk together", "fx", {"fx/b.vert", "fx/M.frag"}, {"fx/A.vert", "fx/bufferA.frag"},
         "a.vert M.frag buffera.frag"},
        {"the same file in both", "fx", {"fx/Fx.vert", "fx/Fx.frag"}, {"fx/fx.vert", "fx/fx.frag"}, "Fx.vert Fx.frag -"},
        {"empty type", "", {"a.vert", "a.frag"}, {"b.vert"}, "- - -"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        runInChild([&] {
            const TempShow show;
            for (const std::string& file : c.disk) show.write(kRoots[0] + file, "disk");
            std::vector<PackFile> files;
            for (const std::string& file : c.pack) files.push_back({file, "pack"});
            if (!files.empty()) show.write("shaders.pak", packBytes(files));
            const LogCapture log;
            loadShaderPack(show.baseDir);
            TimelineEntry entry = entryOf(show, c.type);
            resolveShaderSources(entry);
            const std::string folder = std::string(kRoots[0]) + "fx/";
            std::string found = pathsOf(show, entry);
            for (size_t at = 0; (at = found.find(folder)) != std::string::npos;) found.erase(at, folder.size());
            EXPECT_EQ(found, c.paths);
            for (const std::string& path : {entry.vertPath, entry.fragPath}) {
                EXPECT_TRUE(path.empty() || !readTextFile(path).empty()) << path;
            }
        });
    }
}

} // namespace
