#include "gpu/shader_pack.h"
#include "support/child.h"
#include "support/log_capture.h"
#include "support/shader_pack_file.h"
#include "support/temp_show.h"

namespace {

// Loads the pack of a show whose shaders.pak holds `bytes`, and returns what was logged.
std::string loadPack(const TempShow& show, const std::string& bytes) {
    show.write("shaders.pak", bytes);
    const LogCapture log;
    loadShaderPack(show.baseDir);
    return log.text();
}

std::string loadedLine(const TempShow& show, int count) {
    return "[SHADERPACK] Loaded " + std::to_string(count) + " shaders from " + show.path("shaders.pak") + "\n";
}

// Two entries as another writer made them: "Sub\One.VERT" with the bytes "void", 0, 255, and an empty "two.frag".
TEST(ShaderPackDeathTest, ReadsAPackOfAnotherWriter) {
    runInChild([] {
        const unsigned char pack[] = {
            0x44, 0x53, 0x50, 0x41, 0x4b, 0x30, 0x31, 0x7f, 0x02, 0,    0,    0,    0x0c, 0,    0,    0,    0x06, 0,
            0,    0,    0xfd, 0xc2, 0xfe, 0x18, 0x85, 0x1e, 0x3e, 0xad, 0x11, 0xeb, 0x40, 0x37, 0x7c, 0x7c, 0x51, 0x84,
            0x6e, 0x2b, 0x08, 0,    0,    0,    0,    0,    0,    0,    0xfb, 0xe1, 0xd2, 0x4b, 0x8d, 0x23, 0x1b, 0xc5};
        const TempShow show;
        const std::string bytes(reinterpret_cast<const char*>(pack), sizeof pack);
        EXPECT_EQ(loadPack(show, bytes), loadedLine(show, 2));
        EXPECT_EQ(readTextFile(show.path("assets/shaders/SUB/one.vert")), std::string("void\0\xff", 6));
        EXPECT_TRUE(fileExists(show.path("DemoSceneResources/assets/shaders/two.frag")));
        EXPECT_EQ(readTextFile(show.path("assets/shaders/two.frag")), "");
    });
}

TEST(ShaderPackDeathTest, KeepsWhatPrecedesAFault) {
    const PackFile a = {"a.frag", "A"}, b = {"b.frag", "B"};
    const std::string whole = packBytes({a, b});
    const std::string one = packBytes({a}, 2);
    const struct {
        const char* fault;
        std::string bytes;
        int count; // -1: invalid
    } cases[] = {
        {"one byte short of a header", whole.substr(0, 11), -1},
        {"empty file", "", -1},
        {"another version", std::string(whole).replace(6, 1, "2"), -1},
        {"reserved byte set", std::string(whole).replace(7, 1, "\xff"), 2},
        {"count smaller than the entries", packBytes({a, b}, 1), 1},
        {"count larger than the entries", packBytes({a, b}, 0xFFFFFFFF), 2},
        {"last byte missing", whole.substr(0, whole.size() - 1), 1},
        {"lengths cut short", one + std::string(7, '\x01'), 1},
        {"no name", one + u32Bytes(0) + u32Bytes(1) + "x", 1},
        {"sum of lengths wraps to 4", one + u32Bytes(6) + u32Bytes(0xFFFFFFFE) + "b.fragBBBB", 1},
        {"name longer than memory", one + u32Bytes(0xFFFFFFFF) + u32Bytes(1) + "bB", 1},
        {"data longer than the file", one + u32Bytes(1) + u32Bytes(0x7FFFFFFF) + "bB", 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.fault);
        runInChild([&] {
            const TempShow show;
            const std::string invalid = "[SHADERPACK] Invalid pack: " + show.path("shaders.pak") + "\n";
            EXPECT_EQ(loadPack(show, c.bytes), c.count < 0 ? invalid : loadedLine(show, c.count));
            EXPECT_EQ(readTextFile(show.path("assets/shaders/a.frag")), c.count > 0 ? "A" : "");
            EXPECT_EQ(readTextFile(show.path("assets/shaders/b.frag")), c.count > 1 ? "B" : "");
        });
    }
}

TEST(ShaderPackDeathTest, TakesTheFirstPackThatIsAFileAndLoadsOnce) {
    const char* const places[] = {"DemoSceneResources/runtime/shaders.pak", "runtime/shaders.pak", "shaders.pak"};
    for (size_t first = 0; first <= std::size(places); ++first) {
        SCOPED_TRACE(first);
        runInChild([&] {
            const TempShow show, other;
            for (size_t i = 0; i < first; ++i) std::filesystem::create_directories(show.path(places[i]));
            for (size_t i = first; i < std::size(places); ++i) show.write(places[i], packBytes({}));
            other.write("shaders.pak", packBytes({}));
            const LogCapture log;
            loadShaderPack(show.baseDir);
            loadShaderPack(other.baseDir);
            if (first == std::size(places)) EXPECT_EQ(log.text(), "");
            else EXPECT_EQ(log.text(), "[SHADERPACK] Loaded 0 shaders from " + show.path(places[first]) + "\n");
        });
    }
}

TEST(ShaderPackDeathTest, AnswersBeforeTheDiskBelowTheShaderRootsAlone) {
    runInChild([] {
        const TempShow show;
        const std::string pack = packBytes({{"fx/Same.frag", "first"},
                                            {"FX\\same.FRAG", "later"},
                                            {"fx2/other.frag", "other"},
                                            {"2/odd.frag", "odd"}});
        EXPECT_EQ(loadPack(show, pack), loadedLine(show, 3));
        for (const char* place :
             {"assets/shaders/fx/same.frag", "assets/shaders/fx/loose.frag", "other/fx/same.frag"}) {
            show.write(place, "disk");
        }
        const std::pair<const char*, const char*> files[] = {
            {"assets/shaders/fx/same.frag", "later"},
            {"DemoSceneResources/assets/shaders/FX/SAME.frag", "later"},
            {"assets/shaders//fx/../fx/./same.frag", "later"},
            {"assets/shaders/fx/loose.frag", "disk"},
            {"other/fx/same.frag", "disk"},
            {"assets/fx2/other.frag", nullptr},
            {"assets/shaders/fx2", nullptr}, // and a directory on the disk:
            {"assets/shaders/fx", nullptr},
            {"assets/shaders2/odd.frag", "odd"}, // the prefix test asks for no slash
        };
        for (const auto& [path, text] : files) {
            EXPECT_EQ(fileExists(show.path(path)), text != nullptr) << path;
            EXPECT_EQ(readTextFile(show.path(path)), text ? text : "") << path;
        }
        const std::pair<const char*, bool> directories[] = {
            {"assets/shaders", true},    {"assets/shaders/", true},
            {"assets/shaders/fx", true}, {"assets/shaders/FX2/", true},
            {"assets/shaders/f", false}, {"assets/shaders/fx/same.frag", false},
            {"other/fx", false},         {"assets", false}};
        for (const auto& [path, isThere] : directories) EXPECT_EQ(packHasDirectory(show.path(path)), isThere) << path;
        EXPECT_EQ(packFilesIn(show.path("assets/shaders/fx")), std::vector<std::string>{"same.frag"});
        EXPECT_TRUE(packFilesIn(show.path("assets/shaders")).empty());
    });
}

} // namespace
