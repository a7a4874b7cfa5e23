#include "support/log_capture.h"
#include "support/picture_test.h"

#include "foundation/json.h"
#include "text/bitmap_text.h"

#include <climits>

namespace {

class BitmapTextTest : public PictureTest {
protected:
    BitmapTextTest() : PictureTest("bitmaptext/BitmapText", kWidth, kHeight) {}

    static std::vector<GLint> texels(GLuint texture) {
        GLint width = 0;
        glBindTexture(GL_TEXTURE_1D, texture);
        glGetTexLevelParameteriv(GL_TEXTURE_1D, 0, GL_TEXTURE_WIDTH, &width);
        std::vector<GLint> result(static_cast<size_t>(width));
        glGetTexImage(GL_TEXTURE_1D, 0, GL_RED_INTEGER, GL_INT, result.data());
        return result;
    }

    // Draws a text over black, at scale 1 unless `rest` has another; '#' for a lit pixel, rows from the top.
    std::string drawn(const std::string& text, const std::string& rest, int columns, int rows) {
        BitmapText drawing;
        const std::string json = "{" + rest + R"(, "scale": 1, "text": ")" + text + "\"}";
        EXPECT_TRUE(createBitmapText(fonts, drawing, parseBitmapTextParams(parseJson(json)), program));
        startPicture(columns, rows);
        drawBitmapText(device, drawing, program, values, drawAt(0.0f));
        releaseBitmapText(drawing);
        std::string picture;
        for (int y = 0; y < rows; ++y) {
            for (int x = 0; x < columns; ++x) picture += at(x, y)[0] > 127 ? '#' : '.';
            picture += '\n';
        }
        return picture;
    }
};

TEST_F(BitmapTextTest, FontFilesGiveTheGlyphsThatTheyHold) {
    GLint widest = 0;
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &widest);
    const std::string tooHigh = std::to_string(widest), last = std::to_string(widest / 7 - 1);
    const std::string leftOut = "[FONT] " + show.path("assets/fonts/bitmapfont.json") +
                                ": 2 glyphs left out, codes above " + last + " do not fit the driver's textures\n";
    const std::string rows = R"(, "rows": [1, 2, 3, 4, 5, 6, 7]})";
    const struct {
        std::string json, log;
        int width;                     // texels
        std::array<GLint, 7> lastRows; // of the highest code
    } cases[] = {
        {R"([{"code": 2.9, "rows": [1.9, -1.9, "3", 1e99, -1e99, nan, 7, 8, 9]}])",
         "[FONT] Loaded 1 glyphs (maxCode=2)\n",
         21,
         {1, -1, 0, INT_MAX, INT_MIN, 0, 7}},
        {R"([{"code": 1, "rows": [9, 9, 9, 9, 9, 9, 9]}, {"code": 1)" + rows + "]",
         "[FONT] Loaded 2 glyphs (maxCode=1)\n",
         14,
         {1, 2, 3, 4, 5, 6, 7}},
        {R"([{"code": -1)" + rows + R"(, {"code": "5")" + rows + R"(, {"code": inf)" + rows +
             R"(, {"code": 3, "rows": [1, 2, 3, 4, 5, 6]}, 7, {}])",
         "",
         0,
         {}},
        {R"([{"code": 1e300)" + rows + ", {\"code\": " + tooHigh + rows + R"(, {"code": 0)" + rows + "]",
         leftOut + "[FONT] Loaded 1 glyphs (maxCode=0)\n",
         7,
         {1, 2, 3, 4, 5, 6, 7}},
        {"[{\"code\": " + last + rows + "]",
         "[FONT] Loaded 1 glyphs (maxCode=" + last + ")\n",
         widest / 7 * 7,
         {1, 2, 3, 4, 5, 6, 7}},
        {R"({"code": 65})", "", 0, {}},
    };
    for (const auto& each : cases) {
        SCOPED_TRACE(each.json.substr(0, 80));
        deleteFonts(fonts);
        show.write("assets/fonts/bitmapfont.json", each.json);
        LogCapture log;
        loadBitmapFont(fonts, show.baseDir);
        EXPECT_EQ(log.text(), each.log);
        ASSERT_EQ(fonts.bitmapGlyphs != 0, each.width > 0);
        if (!each.width) continue;
        const std::vector<GLint> all = texels(fonts.bitmapGlyphs);
        ASSERT_EQ(all.size(), static_cast<size_t>(each.width));
        EXPECT_TRUE(std::equal(each.lastRows.begin(), each.lastRows.end(), all.end() - 7));
    }
}

TEST_F(BitmapTextTest, ResourcesComeBeforeAssets) {
    const std::string asset = R"([{"code": 1, "rows": [1, 1, 1, 1, 1, 1, 1]}])";
    const std::string resource = R"([{"code": 0, "rows": [1, 1, 1, 1, 1, 1, 1]}])";
    LogCapture log;
    loadBitmapFont(fonts, show.baseDir);
    show.write("assets/fonts/bitmapfont.json", asset);
    show.write("DemoSceneResources/assets/fonts/bitmapfont.json", resource);
    loadBitmapFont(fonts, show.baseDir);
    EXPECT_EQ(texels(fonts.bitmapGlyphs).size(), 7u);
    EXPECT_EQ(log.text(), "[FONT] bitmapfont.json not found\n[FONT] Loaded 1 glyphs (maxCode=0)\n");
}

TEST_F(BitmapTextTest, ColoursFallBackPartByPart) {
    using Color = std::array<float, 4>;
    const auto read = [](const char* json) { return parseBitmapTextParams(parseJson(json)); };
    const BitmapTextParams params = read(R"({"text": 5, "textColor": [0.5, "x", 0.2, nan, 9],
        "bgColor": [0.5, "x", 0.2, 1], "spacing": inf})");
    EXPECT_EQ(params.text, "HELLO");
    EXPECT_EQ(params.textColor, (Color{0.5f, 1.0f, 0.2f, 1.0f}));
    EXPECT_EQ(params.bgColor, (Color{0.5f, 0.0f, 0.2f, 1.0f}));
    EXPECT_EQ(params.spacing, 1.0f);
    EXPECT_EQ(read(R"({"textColor": [0, 0, 0]})").textColor, (Color{1, 1, 1, 1})); // three are no colour
}

TEST_F(BitmapTextTest, TextIsCutTo512BytesAndFilledUpWithSpaces) {
    Program lengths = link("uniform int uTextLength; out vec4 c;"
                           "void main() { c = vec4(uTextLength / 1024.0); }");
    for (const auto& [length, shown] : {std::pair{0, 0}, {2, 2}, {1 << 20, 512}}) {
        SCOPED_TRACE(length);
        const BitmapTextParams params = {.text = std::string(static_cast<size_t>(length), '\xFF')};
        BitmapText text;
        createBitmapText(fonts, text, params, lengths);
        std::vector<GLint> wanted(512, ' ');
        std::fill_n(wanted.begin(), shown, 255);
        EXPECT_EQ(texels(text.codeTexture), wanted);
        drawBitmapText(device, text, lengths, makeUniformValues(device.programs, lengths), drawAt(0.0f));
        EXPECT_PIXEL(pixel(), {shown / 4, shown / 4, shown / 4, shown / 4});
        releaseBitmapText(text);
    }
    deleteProgram(lengths);
}

TEST_F(BitmapTextTest, LettersStandWhereTheyShould) {
    loadBitmapFont(fonts, GALLERY_PATH);
    // The upper line's upper half lies above the picture.
    EXPECT_EQ(drawn("F\\n.i", R"("textPosX": 1, "textPosY": -4, "lineSpacing": 1.14)", 14, 11), ".#............\n"
                                                                                                ".#............\n"
                                                                                                ".#............\n"
                                                                                                "..............\n"
                                                                                                ".........#....\n"
                                                                                                "..............\n"
                                                                                                "........##....\n"
                                                                                                ".........#....\n"
                                                                                                ".........#....\n"
                                                                                                "...##....#....\n"
                                                                                                "...##...###...\n");
    // A sign by its byte and by its UTF-8 spelling; the box fills the gap behind it.
    const std::string box = R"("textPosX": 0, "textPosY": -3)";
    EXPECT_EQ(drawn("─-", box, 12, 1), "###########.\n");
    EXPECT_EQ(drawn("\x13-", box, 12, 1), "###########.\n");
    // Cut short, a spelling is so many signs: none has the code 0xE2, a round corner has 0x94.
    EXPECT_EQ(drawn("\xE2\x94-", box, 18, 1), "......##....#####.\n");
}

TEST_F(BitmapTextTest, EveryLineIsFound) {
    // Further down than the vertex shader knows where lines begin.
    loadBitmapFont(fonts, GALLERY_PATH);
    std::string text;
    for (int i = 0; i < 40; ++i) text += "..\\n";
    EXPECT_EQ(drawn(text + ".-", R"("textPosX": 0, "textPosY": -323)", 12, 4),
              "......#####.\n............\n..##........\n..##........\n");
}

TEST_F(BitmapTextTest, WithoutAFontOnlyTheBackgroundIsDrawn) {
    EXPECT_EQ(drawn("###", R"("textPosX": 0, "textPosY": 0)", 6, 1), "......\n");
    for (const std::string scale : {"-1", "1e30", "1e-30", "0"}) {
        const std::string hostile = R"("bgColor": [1, 1, 1, 1], "spacing": -1e30, "scale": )" + scale;
        EXPECT_EQ(drawn("###", hostile, 6, 1), "######\n") << scale;
    }
}

} // namespace
