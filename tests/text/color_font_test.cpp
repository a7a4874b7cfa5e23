#include "support/gl_test.h"
#include "support/log_capture.h"
#include "support/temp_show.h"

#include "platform/image.h"
#include "text/fonts.h"

#include <climits>

namespace {

constexpr const char* kFont = "assets/fonts/color/f.json";

class ColorFontTest : public GlTest {
protected:
    // A transparent atlas with inked pixels; places count from the picture's lower left.
    void writeAtlas(int width, int height, std::vector<std::array<int, 2>> ink, uint8_t alpha = 255) {
        std::vector<uint8_t> pixels(static_cast<size_t>(width * height) * 4);
        for (const auto& [x, y] : ink) pixels[static_cast<size_t>(y * width + x) * 4 + 3] = alpha;
        std::string png;
        ASSERT_TRUE(encodePng(pixels.data(), width, height, true, png, {.bottomFirst = true}));
        show.write("assets/fonts/color/f.png", png);
    }

    ColorFont load(const std::string& json) {
        deleteFonts(fonts);
        show.write(kFont, json);
        ColorFont font;
        EXPECT_TRUE(loadColorFont(fonts, show.baseDir, kFont, font)) << json;
        return font;
    }

    void TearDown() override {
        deleteFonts(fonts);
        GlTest::TearDown();
    }

    TempShow show;
    Fonts fonts;
};

TEST_F(ColorFontTest, GlyphsAreCellsAndLinesAsHighAsInk) {
    // The first cell lies in the first bytes of the picture as far as ink goes, at its top as far as
    // texture coordinates go. The last row of cells is all ink, but has no character.
    writeAtlas(8, 12, {{1, 1}, {6, 2}, {5, 5}, {0, 8}, {0, 11}});
    LogCapture log;
    const ColorFont font = load(R"({"texture": "f.png", "cellWidth": 4.9, "cellHeight": 4, "columns": 2,
        "rows": 2, "spaceWidth": 1.5, "chars": "AB A and more"})");
    // Ink in rows 1 and 2, and two rows more.
    EXPECT_EQ(log.text(), "[KTEXT] Loaded color font: " + show.path("assets/fonts/color/f.png") +
                              " (4 glyphs, 8x12, cell=4x4, lineAdvance=4.0)\n");
    EXPECT_EQ(font.glyphs.size(), 3u); // the second A took the place of the first
    EXPECT_EQ(font.baseline, 4);
    EXPECT_EQ(font.glyphs.at('B').advance, 4.0f);
    EXPECT_EQ(font.glyphs.at(' ').advance, 1.5f);
    const ColorGlyph& glyph = font.glyphs.at('A');
    EXPECT_EQ(glyph.u0, 0.5f);
    EXPECT_EQ(glyph.u1, 1.0f);
    EXPECT_FLOAT_EQ(glyph.v0, 1.0f - 8.0f / 12.0f);
    EXPECT_FLOAT_EQ(glyph.v1, 1.0f - 4.0f / 12.0f);

    writeAtlas(8, 8, {{0, 0}, {0, 7}}, 8); // too faint for ink
    EXPECT_EQ(load(R"({"texture": "f.png", "cellWidth": 4, "cellHeight": 7, "chars": "A"})").lineAdvance, 7.0f);
}

TEST_F(ColorFontTest, AbsurdDescriptionsAreKeptAndDoNoHarm) {
    writeAtlas(8, 8, {{0, 0}});
    const struct {
        std::string keys;
        int cellHeight;
        size_t glyphs;
    } cases[] = {
        {R"("columns": 0)", 32, 0},
        {R"("columns": -2, "rows": -2)", 32, 0},
        {R"("columns": 1e300, "rows": 1e300)", 32, 3},
        {R"("columns": 1e999, "rows": "4")", 32, 3},
        {R"("columns": 1, "rows": 1e9, "cellWidth": 1e99, "cellHeight": 1e99)", INT_MAX, 3},
        {R"("cellWidth": 1, "cellHeight": 1e9)", 1000000000, 3},
        {R"("cellWidth": 0, "cellHeight": 0)", 0, 3},
        {R"("cellWidth": -5, "cellHeight": -5)", -5, 3},
        {R"("columns": 70000, "rows": 70000, "chars": ")" + std::string(200000, 'x') + '"', 32, 1},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.keys.substr(0, 80));
        const ColorFont font = load(R"({"texture": "f.png", )" + each.keys + R"(, "chars": "ABC"})");
        EXPECT_EQ(font.cellHeight, each.cellHeight);
        EXPECT_EQ(font.glyphs.size(), each.glyphs);
        EXPECT_LE(font.chars.size(), kMaxFontChars);
        EXPECT_EQ(font.lineAdvance, static_cast<float>(each.cellHeight)); // no cell lies within the atlas
    }
}

TEST_F(ColorFontTest, FilesAreFoundWhereShowsKeepThem) {
    const std::string here = show.write(kFont, "{}"), resource = show.write("DemoSceneResources/r.json", "{}");
    EXPECT_EQ(resolveColorFontPath("assets\\fonts/color\\f.json", show.baseDir), here);
    EXPECT_EQ(resolveColorFontPath(here, "/nowhere"), here);
    EXPECT_EQ(resolveColorFontPath("r.json", show.baseDir), resource);
    EXPECT_EQ(resolveColorFontPath("", show.baseDir), "");
    const std::string usual = show.write("assets/fonts/color/demo_neon_32.json", "{}");
    EXPECT_EQ(resolveColorFontPath("", show.baseDir), usual);
    EXPECT_EQ(resolveColorFontPath(std::string(100000, 'x'), show.baseDir), "");

    const std::string atBase = show.write("t.png", "-");
    EXPECT_EQ(resolveFontTexturePath("t.png", here, show.baseDir), atBase);
    const std::string beside = show.write("assets/fonts/color/t.png", "-");
    EXPECT_EQ(resolveFontTexturePath("t.png", here, show.baseDir), beside);
    EXPECT_EQ(resolveFontTexturePath("", here, show.baseDir), "");
}

TEST_F(ColorFontTest, FailuresAreSaidOnce) {
    const std::string broken = show.write("assets/fonts/color/broken.png", "no picture");
    const std::pair<const char*, std::string> cases[] = {
        {"", ""},
        {"[1]", ""},
        {"{}", "[KTEXT] Color font texture not found: \n"},
        {R"({"texture": "a/b.png"})", "[KTEXT] Color font texture not found: a/b.png\n"},
        {R"({"texture": "broken.png"})", "[KTEXT] Failed to load texture: " + broken + "\n"},
    };
    ColorFont font;
    std::string wanted = "[KTEXT] Color font json not found: gone/f.json\n";
    LogCapture log;
    EXPECT_FALSE(loadColorFont(fonts, show.baseDir, "gone/f.json", font));
    for (const auto& [json, line] : cases) {
        SCOPED_TRACE(json);
        show.write(kFont, json);
        EXPECT_FALSE(loadColorFont(fonts, show.baseDir, kFont, font));
        EXPECT_EQ(font.texture, 0u);
        EXPECT_EQ(log.text(), wanted += line);
    }
}

TEST_F(ColorFontTest, ShippedFontsHoldAllOfAscii) {
    for (const std::string name : {"demo_neon_32.json", "demo_slab_64.json"}) {
        SCOPED_TRACE(name);
        ColorFont font, again;
        ASSERT_TRUE(loadColorFont(fonts, GALLERY_PATH, "assets/fonts/color/" + name, font));
        for (unsigned char c = ' '; c <= '~'; ++c) EXPECT_TRUE(font.glyphs.contains(c)) << c;
        EXPECT_EQ(font.columns * font.cellWidth, font.textureWidth);
        EXPECT_EQ(font.rows * font.cellHeight, font.textureHeight);
        EXPECT_GT(font.lineAdvance, static_cast<float>(font.cellHeight) * 0.7f);
        EXPECT_TRUE(loadColorFont(fonts, GALLERY_PATH, "assets\\fonts\\color\\" + name, again));
        EXPECT_EQ(again.texture, font.texture); // one atlas for all its users
        releaseColorFont(font);
        EXPECT_TRUE(glIsTexture(again.texture));
    }
}

} // namespace
