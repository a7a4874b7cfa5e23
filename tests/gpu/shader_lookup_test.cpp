#include "gpu/shader_lookup.h"
#include "gpu/shader_pack.h"
#include "support/child.h"
#include "support/log_capture.h"
#include "support/shader_pack_file.h"
#include "support/temp_show.h"

#include "config/glitch_params.h"
#include "foundation/json.h"

namespace {

using Names = std::vector<std::string>;

constexpr const char* kRoots[] = {"DemoSceneResources/assets/shaders/", "assets/shaders/"};

// Vertex, fragment and buffer shader that an entry gets in a show with these files, "-" for none. Those on the disk
// lie in one folder, each with the number of its root before its name; so do those that are found.
std::string lookUp(const std::string& folder, const std::string& type, const Names& disk, const Names& pack = {},
                   const std::string& glitchStyle = "") {
    const TempShow show;
    const auto place = [&](size_t root) { return kRoots[root] + folder + "/"; };
    for (const std::string& file : disk) show.write(place(file[0] == '1') + file.substr(1), "disk");
    if (!pack.empty()) {
        std::vector<PackFile> files;
        for (const std::string& file : pack) files.push_back({file, "pack"});
        show.write("shaders.pak", packBytes(files));
        const LogCapture quiet;
        loadShaderPack(show.baseDir);
    }
    const std::string glitch = glitchShaderName(readGlitchParams(parseJson("{\"style\":" + glitchStyle + "}")).style);
    const ShaderPaths paths = type == "glitch" ? resolveGlitchShaders(glitch, show.baseDir)
                                               : resolveShaderSources(type, show.baseDir);
    std::string found;
    for (std::string path : {paths.vertex, paths.fragment, paths.buffer}) {
        EXPECT_TRUE(path.empty() || !readTextFile(path).empty()) << path;
        path = nativePath(path);
        for (const size_t root : {0, 1}) {
            const std::string start = show.path(place(root));
            if (path.starts_with(start)) path.replace(0, start.size(), std::to_string(root));
        }
        found += (found.empty() ? "" : " ") + (path.empty() ? "-" : path);
    }
    return found;
}

TEST(ShaderLookup, FindsGlitchShadersByStyle) {
    const struct {
        Names files;
        const char* style;
        const char* found;
    } cases[] = {
        {{"1GlitchRain.frag", "1Glitch.vert"}, R"("rain")", "1Glitch.vert 1GlitchRain.frag -"},
        {{"0GlitchRain.frag", "0Glitch.vert", "0GlitchRain.vert"}, R"("RAIN")", "0GlitchRain.vert 0GlitchRain.frag -"},
        // The root is chosen by the fragment shader.
        {{"0Glitch.vert", "0GlitchRain.vert", "1GlitchRain.frag"}, R"("rain")", "- 1GlitchRain.frag -"},
        {{"0GlitchRain.frag", "1GlitchRain.frag", "1Glitch.vert"}, R"("rain")", "- 0GlitchRain.frag -"},
        {{"0Glitch.frag", "0Glitch.vert"}, R"("rains")", "0Glitch.vert 0Glitch.frag -"},
        {{"0Glitch.frag", "0CRTTube.frag"}, R"(["crttube"])", "- 0Glitch.frag -"},
        {{"0Glitch.frag", "0CRTTube.frag"}, R"("crttube")", "- 0CRTTube.frag -"},
        {{"0Glitch.frag", "0Glitch.vert"}, R"("rain")", "- - -"},
    };
    for (const auto& [files, style, found] : cases) {
        EXPECT_EQ(lookUp("glitch", "glitch", files, {}, style), found) << style;
    }
}

TEST(ShaderLookup, FindsBuiltinShaders) {
    const char* const builtins[][3] = {{"OverLayer", "starfields", "Overlayer"},
                                       {"rotozoom", "rotozoom", "OldSchoolRotozoom"},
                                       {"rotozoombasic", "rotozoom", "BasiclRotozoom"},
                                       {"shapetext", "Text", "ShapeText"},
                                       {"lowerthird", "Text", "LowerThird"},
                                       {"CREDITROLL", "Text", "LowerThird"}};
    for (const auto& [type, folder, name] : builtins) {
        const std::string vertex = std::string("1") + name + ".vert", fragment = std::string("1") + name + ".frag";
        EXPECT_EQ(lookUp(folder, type, {vertex, fragment}), vertex + " " + fragment + " -") << type;
    }
    // A folder of a folder, whatever the slash.
    for (const char* type : {"Fx/Glow", "fx\\glow"})
        EXPECT_EQ(lookUp("fx/glow", type, {"1a.frag"}), "- 1a.frag -") << type;
    // The first root that has the directory wins, whatever is in it; names of the table count as a whole.
    EXPECT_EQ(lookUp("Text", "shapetext", {"1ShapeText.vert", "0ShapeText.frag"}), "- 0ShapeText.frag -");
    EXPECT_EQ(lookUp("starfields", "overlayers", {"1Overlayer.vert", "1Overlayer.frag"}), "- - -");
}

TEST(ShaderLookupDeathTest, ChoosesAmongTheFilesOfADirectory) {
    const struct {
        const char* name;
        Names disk;
        Names pack;
        const char* found;
        const char* type = "fx";
    } cases[] = {
        {"named files before first ones", {"0a.vert", "0fx.vert", "0a.frag", "0FX.frag"}, {}, "0fx.vert 0FX.frag -"},
        {"first ones, ignoring case", {"0b.vert", "0A.vert", "0C.frag", "0b.frag"}, {}, "0A.vert 0b.frag -", "FX"},
        {"buffers are no main pass",
         {"0BufferB.frag", "0aBuffera.frag", "0z.frag", "0v.vert"},
         {},
         "0v.vert 0z.frag 0aBuffera.frag"},
        {"nothing but a buffer", {"0BufferA.frag"}, {}, "- - 0BufferA.frag"},
        {"a buffer in a named pair",
         {"0fx.vert", "0fx.frag", "0FxBufferA.frag", "0FxBufferA2.frag"},
         {},
         "0fx.vert 0fx.frag 0FxBufferA.frag"},
        {"neither other files nor deeper ones", {"0a.txt", "0vert", "0fx.frag.bak", "0in/fx.vert"}, {}, "- - -"},
        {"upper-case extensions", {"0FX.VERT", "0FX.FRAG"}, {}, "0FX.VERT 0FX.FRAG -"},
        {"pack alone",
         {},
         {"fx/A.vert", "Fx\\Fx.frag", "fx/in/bufferA.frag", "fx2/fx.vert"},
         "0a.vert 0fx.frag -",
         "Fx"},
        {"pack and disk together",
         {"0b.vert", "0M.frag"},
         {"fx/A.vert", "fx/bufferA.frag"},
         "0a.vert 0M.frag 0buffera.frag"},
        {"the same file in both", {"0Fx.vert", "0Fx.frag"}, {"fx/fx.vert", "fx/fx.frag"}, "0Fx.vert 0Fx.frag -"},
        {"empty type", {"0../a.vert", "0../a.frag"}, {"b.vert"}, "- - -", ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        runInChild([&] { EXPECT_EQ(lookUp("fx", c.type, c.disk, c.pack), c.found); });
    }
}

} // namespace
