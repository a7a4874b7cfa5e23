#include "support/allocation_count.h"
#include "support/gl_test.h"
#include "support/log_capture.h"
#include "support/temp_show.h"

#include "platform/image.h"
#include "text/caption.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>
#include <sstream>

namespace {

constexpr float kDuration = 4.0f;

// Cells of 10 x 20 pixels in one row; the ink of every letter but the space is 6 x 10, from (2, 4) on.
ColorFont blockFont(const std::string& chars = " ABH?.") {
    ColorFont font;
    font.cellWidth = 10;
    font.cellHeight = 20;
    font.columns = font.textureWidth = static_cast<int>(chars.size());
    font.textureWidth *= 10;
    font.textureHeight = 20;
    font.chars = chars;
    for (size_t i = 0; i < chars.size(); ++i) {
        const float count = static_cast<float>(chars.size()), left = static_cast<float>(i);
        font.glyphs[static_cast<unsigned char>(chars[i])] = {left / count, 0.0f, (left + 1.0f) / count, 1.0f, 10.0f};
    }
    return font;
}

// Top row first. Cells not named in `red` are white; those are red from edge to edge.
std::vector<uint8_t> blockPixels(const ColorFont& font, const std::string& red = "") {
    std::vector<uint8_t> pixels(static_cast<size_t>(font.textureWidth * font.textureHeight) * 4);
    for (int y = 0; y < font.textureHeight; ++y) {
        for (int x = 0; x < font.textureWidth; ++x) {
            const char c = font.chars[static_cast<size_t>(x / 10)];
            const bool isRed = red.find(c) != std::string::npos;
            const bool inked = isRed || (c != ' ' && x % 10 >= 2 && x % 10 < 8 && y >= 4 && y < 14);
            uint8_t* pixel = &pixels[static_cast<size_t>(y * font.textureWidth + x) * 4];
            pixel[0] = 255;
            pixel[1] = pixel[2] = isRed ? 0 : 255;
            pixel[3] = inked ? 255 : 0;
        }
    }
    return pixels;
}

CaptionFont blockLetters(const std::string& chars = " ABH?.") {
    const ColorFont font = blockFont(chars);
    std::vector<uint8_t> pixels = blockPixels(font), flipped;
    const size_t row = static_cast<size_t>(std::max(font.textureWidth, 1)) * 4;
    for (size_t y = pixels.size() / row; y-- > 0;) {
        flipped.insert(flipped.end(), pixels.begin() + static_cast<long>(y * row), pixels.begin() + static_cast<long>((y + 1) * row));
    }
    return measureCaptionFont(font, flipped);
}

Caption makeCaption(const std::string& json, bool isCreditRoll, float duration = kDuration) {
    Caption caption;
    caption.params = readCaptionParams(parseJson(json), isCreditRoll);
    caption.duration = duration;
    static const CaptionFont letters = blockLetters();
    caption.letters = &letters;
    return caption;
}

// What the vertices cover, where they are not transparent; no area: nothing.
CaptionRect visible(const std::vector<float>& vertices, float width, float height, bool glyphsOnly = false) {
    CaptionRect box = {width, height, 0.0f, 0.0f};
    for (size_t i = 0; i < vertices.size(); i += kCaptionQuadFloats) {
        const float* first = &vertices[i];
        const float* opposite = first + 2 * kCaptionVertexFloats;
        if ((first[4] <= 0.0f && opposite[4] <= 0.0f) || first[8] <= 0.0f) continue;
        if (glyphsOnly ? first[9] != 1.0f : first[9] == 2.0f) continue; // without the shadow
        const CaptionRect quad = {std::max(first[0], 0.0f), std::max(first[1], 0.0f), std::min(opposite[0], width),
                                  std::min(opposite[1], height)};
        if (quad.x1 <= quad.x0 || quad.y1 <= quad.y0) continue;
        box = {std::min(box.x0, quad.x0), std::min(box.y0, quad.y0), std::max(box.x1, quad.x1), std::max(box.y1, quad.y1)};
    }
    return box;
}

bool isEmpty(const CaptionRect& box) {
    return box.x1 <= box.x0 || box.y1 <= box.y0;
}

std::string creditsJson(int count, const std::string& more = "") {
    std::string json = "{" + more + (more.empty() ? "" : ",") + "\"entries\": [";
    for (int i = 0; i < count; ++i) json += std::string(i ? "," : "") + R"({"role": "AB", "name": "BA", "subtitle": "H"})";
    return json + "]}";
}

TEST(CaptionParamsTest, ReadsBringsIntoRangeAndFallsBack) {
    using P = CaptionParams;
    const struct {
        const char* json;
        bool roll;
        std::function<float(const P&)> value;
        float wanted;
    } cases[] = {
        {R"([])", false, [](const P& p) { return p.title == "SIGNAL OPERATOR" && p.label == "LIVE"; }, 1},
        {R"({"title": 7, "subtitle": ""})", false, [](const P& p) { return p.title == "SIGNAL OPERATOR" && p.subtitle.empty(); }, 1},
        {R"({"titleScale": 0})", false, [](const P& p) { return p.titleScale; }, 0.25f},
        {R"({"titleScale": 1e999})", false, [](const P& p) { return p.titleScale; }, 2},
        {R"({"padding": -5})", false, [](const P& p) { return p.padding; }, 0},
        {R"({"enterDuration": 1e30})", false, [](const P& p) { return p.enterDuration; }, 30},
        {R"({"enter": "Slide-Up"})", false, [](const P& p) { return p.enter == CaptionEnter::slideUp; }, 1},
        {R"({"enter": "spiral"})", false, [](const P& p) { return p.enter == CaptionEnter::slideLeft; }, 1},
        {R"({"anchor": "top-right"})", false, [](const P& p) { return p.atTop && p.side == CaptionSide::right; }, 1},
        {R"({"anchor": "center"})", false, [](const P& p) { return !p.atTop && p.side == CaptionSide::center; }, 1},
        {R"({})", false, [](const P& p) { return p.side == CaptionSide::left; }, 1},
        {R"({})", true, [](const P& p) { return p.side == CaptionSide::center; }, 1},
        {R"({"panelColor": [0.5, "x", 9]})", false, [](const P& p) { return p.panelColor.r * 100 + p.panelColor.g + p.panelColor.b; }, 51.035f},
        {R"({"accentColor": [0, 1, 0]})", false, [](const P& p) { return p.labelColor.g; }, 1},
        {R"({"mode": "blocks", "align": "center"})", true, [](const P& p) { return p.mode == CreditMode::blocks && p.align == CreditAlign::center; }, 1},
        {R"({"panelEnabled": false})", true, [](const P& p) { return p.showPanel; }, 0},
        {R"({"panelEnabled": false, "showPanel": true})", true, [](const P& p) { return p.showPanel; }, 1},
        {R"({"textTint": [0, 1, 0], "nameTint": [1, 0, 0]})", true, [](const P& p) { return p.nameTint.g + 2 * p.roleTint.g; }, 2},
        {R"({"scrollSpeed": -3})", true, [](const P& p) { return p.scrollSpeed; }, 0},
        {R"({"entries": [1, {}, {"name": "A"}, {"role": 2}]})", true, [](const P& p) { return static_cast<float>(p.entries.size()); }, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.json);
        EXPECT_FLOAT_EQ(c.value(readCaptionParams(parseJson(c.json), c.roll)), c.wanted);
    }
}

TEST(CaptionParamsTest, OversizedTextsAreCutWithOneLine) {
    LogCapture log;
    const CaptionParams many = readCaptionParams(parseJson(creditsJson(20000)), true);
    EXPECT_EQ(many.entries.size(), kMaxCreditEntries);
    EXPECT_EQ(log.text(), "    [WARN] Credit roll cut: 8192 entries of at most 8192, texts of at most 4096 bytes, together 262144\n");
    const std::string megabyte(1 << 20, 'A');
    const CaptionParams wide = readCaptionParams(parseJson(R"({"title": ")" + megabyte + R"("})"), false);
    EXPECT_EQ(wide.title.size(), kMaxCaptionTextBytes);
    EXPECT_TRUE(log.text().ends_with("    [WARN] Caption text cut to 4096 bytes\n"));
}

TEST(CaptionFontTest, TextsBecomeLinesOfGlyphsThatExist) {
    const struct {
        const char* chars;
        const char* text;
        std::vector<std::string> lines;
    } cases[] = {
        {" AB?", "A\\nB\nA", {"A", "B", "A"}},
        {" AB?", "A\\", {"A?"}},
        {" AB?", "A\tB\r\n\n", {"A B", "", ""}},
        {" AB?", "A\xC3\xA9" "B \xF0\x9F\x98\x80", {"A?B ?"}},
        {" AB?", "\x80\xFF\xC3", {"???"}},
        {"AB", "A xB", {"A B"}}, // neither '?' nor a cell for the space
        {"", "A", {""}},
        {" AB?", "", {}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        EXPECT_EQ(captionLines(blockLetters(c.chars), c.text, 8), c.lines);
    }
    EXPECT_EQ(captionLines(blockLetters(), std::string(1000, '\n'), 4).size(), 4u);
}

TEST(CaptionFontTest, LinesAreAsWideAsTheirInkAndShrinkBeforeTheyAreCut) {
    const CaptionFont font = blockLetters(); // 10 pixels of capitals, gaps of 2
    EXPECT_FLOAT_EQ(captionWidth(font, "AB", 10.0f), 6 + 2 + 6);
    EXPECT_FLOAT_EQ(captionWidth(font, "AB", 30.0f), 3 * 14);
    EXPECT_FLOAT_EQ(captionWidth(font, "", 10.0f), 0.0f);
    std::string line = "ABABAB"; // 46 wide
    EXPECT_FLOAT_EQ(fitCaptionLine(font, line, 10.0f, 46.0f), 10.0f);
    EXPECT_FLOAT_EQ(fitCaptionLine(font, line, 10.0f, 34.5f), 7.5f);
    EXPECT_EQ(line, "ABABAB");
    line = std::string(100, 'A');
    const float cap = fitCaptionLine(font, line, 10.0f, 60.0f);
    EXPECT_FLOAT_EQ(cap, 5.0f);
    EXPECT_EQ(line, std::string(12, 'A') + "..."); // 15 x 4 - 1
    EXPECT_LE(captionWidth(font, line, cap), 60.0f);
}

TEST(LowerThirdTest, EntersAndLeavesInEachStyle) {
    const struct {
        const char* enter;
        float fromX, fromY; // where the panel is from its place while it comes in
        bool grows;
    } cases[] = {
        {"slide-left", -1, 0, false}, {"slide-right", 1, 0, false}, {"slide-up", 0, 1, false},
        {"fade", 0, 0, false}, {"wipe", 0, 0, true},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.enter);
        Caption caption = makeCaption(std::string(R"({"title": "ABBA", "enterDuration": 1, "enter": ")") + c.enter + "\"}", false);
        const auto at = [&](float time) {
            buildCaption(caption, time, 1920, 1080);
            return caption.vertices;
        };
        for (const float gone : {-1.0f, 0.0f, kDuration, kDuration + 1e6f}) {
            EXPECT_TRUE(isEmpty(visible(at(gone), 1920, 1080))) << gone;
            EXPECT_FALSE(caption.vertices.empty()) << gone; // something for the driver to compile
        }
        EXPECT_TRUE(isEmpty(visible(at(0.0625f), 1920, 1080, true))) << "texts come later";
        const CaptionRect settled = visible(at(1.0f), 1920, 1080);
        const CaptionRect panel = caption.lowerThird.panel;
        EXPECT_NEAR(settled.x0, panel.x0, 1.0f);
        EXPECT_NEAR(settled.y1, panel.y1, 1.0f);
        EXPECT_EQ(at(2.0f), at(1.0f));

        const CaptionRect early = visible(at(0.125f), 1920, 1080);
        EXPECT_EQ(early.x1 < settled.x1 - 20.0f, c.fromX < 0 || c.grows);
        EXPECT_EQ(early.x0 > settled.x0 + 20.0f, c.fromX > 0);
        EXPECT_EQ(early.y0 > caption.lowerThird.panel.y0 + 20.0f, c.fromY > 0);
        for (const float time : {0.125f, 0.5f, 0.75f}) EXPECT_EQ(at(time), at(kDuration - time)) << time;
    }
}

TEST(LowerThirdTest, ProgressKnowsTheEntrysLength) {
    CaptionParams params = readCaptionParams({}, false);
    params.enterDuration = 1.0f;
    const auto at = [&](float time, float duration, float delay = 0.0f) { return lowerThirdProgress(params, time, duration, delay); };
    EXPECT_FLOAT_EQ(at(0.3f, kDuration), 1.0f - std::pow(0.5f, 4.0f)); // half of a part's 0.6
    EXPECT_FLOAT_EQ(at(0.7f, kDuration, 0.4f), 1.0f - std::pow(0.5f, 4.0f));
    EXPECT_FLOAT_EQ(at(1e9f, 0.0f), 1.0f); // open-ended
    EXPECT_FLOAT_EQ(at(0.25f, 0.5f), 1.0f); // half of a short entry for the entrance
    EXPECT_FLOAT_EQ(at(0.5f, 0.5f), 0.0f);
    params.enterDuration = 0.0f;
    EXPECT_FLOAT_EQ(at(0.0f, kDuration), 1.0f);
    EXPECT_FLOAT_EQ(at(-0.1f, kDuration), 0.0f);
}

TEST(LowerThirdTest, ScalesWithTheOutputAndStaysInside) {
    const std::string longest = R"({"title": ")" + std::string(4000, 'A') + R"(", "titleScale": 16, "subtitleScale": 16, "subtitle": "A\nB\nA\nB\nA\nB\nA\nB\nA\nB"})";
    Caption small = makeCaption("{}", false), large = makeCaption("{}", false);
    buildCaption(small, 2.0f, 640, 360);
    buildCaption(large, 2.0f, 3840, 2160);
    EXPECT_NEAR(large.lowerThird.panel.x1, 6.0f * small.lowerThird.panel.x1, 0.1f);
    EXPECT_NEAR(large.lowerThird.title[0].capPixels, 6.0f * small.lowerThird.title[0].capPixels, 0.01f);
    const std::pair<int, int> sizes[] = {{1, 1}, {64, 36}, {640, 360}, {360, 640}, {3840, 300}, {0, -4}};
    for (const char* anchor : {"left", "center", "right", "top-left"}) {
        Caption caption = makeCaption(longest, false);
        caption.params.side = readCaptionParams(parseJson(std::string(R"({"anchor": ")") + anchor + "\"}"), false).side;
        for (const auto& [width, height] : sizes) {
            SCOPED_TRACE(std::string(anchor) + " " + std::to_string(width));
            buildCaption(caption, 2.0f, width, height);
            const CaptionRect& panel = caption.lowerThird.panel;
            const float w = static_cast<float>(std::max(width, 1)), h = static_cast<float>(std::max(height, 1));
            EXPECT_TRUE(panel.x0 >= 0.0f && panel.x1 <= w && panel.y0 >= -0.01f && panel.y1 <= h);
            for (const float value : caption.vertices) ASSERT_TRUE(std::isfinite(value));
            for (const CaptionLine& line : caption.lowerThird.title) {
                EXPECT_LE(line.x + captionWidth(*caption.letters, line.text, line.capPixels), panel.x1 + 0.1f);
            }
        }
    }
}

TEST(CreditRollTest, FitsItsEntryExactly) {
    Caption caption = makeCaption(creditsJson(40), true, 20.0f);
    buildCaption(caption, 0.0f, 1920, 1080);
    const CreditRoll& roll = caption.creditRoll;
    EXPECT_FLOAT_EQ(roll.rows.front().top, 0.0f);
    EXPECT_GT(roll.contentHeight, 1080.0f);
    const float speed = creditSpeed(roll, caption.params, 20.0f);
    EXPECT_NEAR(1080.0f - speed * 20.0f + roll.rows.back().bottom, 0.0f, 0.01f);
    const float aroundInk = 0.5f * roll.overhang; // cells reach further than their ink
    EXPECT_GT(visible(caption.vertices, 1920, 1080, true).y0, 1080.0f - aroundInk);
    buildCaption(caption, 20.0f, 1920, 1080);
    EXPECT_LT(visible(caption.vertices, 1920, 1080, true).y1, aroundInk);
    buildCaption(caption, 10.0f, 1920, 1080);
    EXPECT_GT(visible(caption.vertices, 1920, 1080, true).y1, 1000.0f);

    caption.params.scrollSpeed = 100.0f;
    EXPECT_FLOAT_EQ(creditSpeed(roll, caption.params, 20.0f), 100.0f);
    EXPECT_FLOAT_EQ(creditSpeed(layoutCreditRoll(caption.params, *caption.letters, 3840, 2160), caption.params, 20.0f), 200.0f);
    caption.params.scrollSpeed = 0.0f;
    EXPECT_GT(creditSpeed(roll, caption.params, 0.0f), 0.0f); // open-ended
}

TEST(CreditRollTest, ColumnsMeetAtTheGutterAndCentredLinesAtTheMiddle) {
    const std::string entries = R"("showHeader": false, "entries": [{"role": "ABA", "name": "B"}, {"role": "A", "name": "BAB"}])";
    Caption columns = makeCaption("{" + entries + "}", true), centred = makeCaption(R"({"align": "center", )" + entries + "}", true);
    const auto right = [&](const CaptionLine& line) { return line.x + captionWidth(*columns.letters, line.text, line.capPixels); };
    buildCaption(columns, 1.0f, 1920, 1080);
    const auto& lines = columns.creditRoll.lines;
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_NEAR(right(lines[0]), right(lines[2]), 0.01f);
    EXPECT_FLOAT_EQ(lines[1].x, lines[3].x);
    EXPECT_FLOAT_EQ(lines[0].top + lines[0].capPixels, lines[1].top + lines[1].capPixels); // one baseline
    EXPECT_NEAR(0.5f * (right(lines[0]) + lines[1].x), 960.0f, 0.01f);
    buildCaption(centred, 1.0f, 1920, 1080);
    for (const CaptionLine& line : centred.creditRoll.lines) EXPECT_NEAR(0.5f * (line.x + right(line)), 960.0f, 0.01f);
}

TEST(CreditRollTest, BlocksShareTheirTime) {
    Caption caption = makeCaption(creditsJson(30, R"("mode": "blocks", "fadeDuration": 0.5)"), true, 12.0f);
    buildCaption(caption, 0.0f, 1920, 1080);
    const CreditRoll& roll = caption.creditRoll;
    const size_t count = roll.groups.size();
    ASSERT_GE(count, 3u);
    const float each = 12.0f / static_cast<float>(count);
    size_t rows = roll.headerRows;
    for (const CreditGroup& group : roll.groups) {
        EXPECT_EQ(group.firstRow, rows);
        rows += group.rowCount;
        EXPECT_GE(roll.rows[group.firstRow].top + group.dy, roll.rows[roll.headerRows - 1].bottom + roll.headerDy);
        EXPECT_LE(roll.rows[rows - 1].bottom + group.dy, 1080.0f);
    }
    EXPECT_EQ(rows, roll.rows.size());

    // A heading goes with what it heads.
    Caption headed = makeCaption(R"({"mode": "blocks", "nameScale": 8, "roleScale": 8, "entries": [
        {"name": "A"}, {"role": "B"}, {"name": "A"}, {"role": "B"}, {"name": "A"}]})", true);
    buildCaption(headed, 0.0f, 1920, 1080);
    ASSERT_EQ(headed.creditRoll.groups.size(), 3u);
    EXPECT_EQ(headed.creditRoll.groups[1].rowCount, 2u);

    const auto at = [&](float time, float duration) { return creditMoment(roll, caption.params, time, duration); };
    const auto alpha = [&](float time, float duration) { return at(time, duration).arrival * at(time, duration).stay; };
    EXPECT_EQ(at(each * 1.5f, 12.0f).group, 1u);
    EXPECT_FLOAT_EQ(alpha(each * 1.5f, 12.0f), 1.0f);
    EXPECT_NEAR(alpha(each + 0.25f, 12.0f), 0.5f, 1e-4f);
    EXPECT_NEAR(alpha(2.0f * each - 0.25f, 12.0f), 0.5f, 1e-4f);
    EXPECT_EQ(at(12.0f, 12.0f).group, count);
    EXPECT_EQ(at(-1.0f, 12.0f).group, count);
    EXPECT_EQ(at(1e30f, 0.0f).group, count - 1); // open-ended: the last one stays
    EXPECT_FLOAT_EQ(alpha(1e30f, 0.0f), 1.0f);
    caption.params.blockDuration = 2.0f;
    EXPECT_EQ(at(3.0f, 12.0f).group, 1u);
}

TEST(CreditRollTest, LongRollsCostWhatIsSeenAndSteadyFramesAllocateNothing) {
    LogCapture quiet;
    Caption caption = makeCaption(creditsJson(9000), true, 600.0f);
    buildCaption(caption, 0.0f, 640, 360);
    const long before = allocationCount();
    for (float time = 1.0f; time < 600.0f; time += 7.0f) {
        buildCaption(caption, time, 640, 360);
        ASSERT_LE(caption.vertices.size(), 200 * kCaptionQuadFloats) << time;
    }
    EXPECT_EQ(allocationCount(), before);
    Caption lower = makeCaption("{}", false);
    buildCaption(lower, 0.0f, 640, 360);
    const long between = allocationCount();
    for (float time = 0.0f; time < 4.0f; time += 0.1f) buildCaption(lower, time, 640, 360);
    EXPECT_EQ(allocationCount(), between);
}

TEST(CreditRollTest, HostileTimesAndTextsStayFinite) {
    const std::string newlines = R"({"name": ")" + std::string(4096, 'A') + R"("}, {"role": ")" + std::string(3000, '\n') + R"(A"})";
    for (const char* mode : {"scroll", "blocks"}) {
        Caption caption = makeCaption(R"({"rowSpacing": 0, "nameScale": 0, "lineSpacing": 0, "roleColumnWidth": 1e9, "mode": ")" +
                                          std::string(mode) + "\", \"entries\": [" + newlines + "]}", true);
        for (const float time : {-1.0f, 0.0f, 1e-30f, 2.0f, 3.4e38f, std::numeric_limits<float>::infinity()}) {
            SCOPED_TRACE(std::string(mode) + std::to_string(time));
            buildCaption(caption, time, 320, 180);
            for (const float value : caption.vertices) ASSERT_TRUE(std::isfinite(value));
        }
    }
    Caption empty = makeCaption(R"({"header": "", "mode": "blocks"})", true);
    const CaptionFont none = measureCaptionFont({}, {});
    empty.letters = &none;
    buildCaption(empty, 1.0f, 320, 180);
    EXPECT_FALSE(empty.vertices.empty());

    // A shader that counts its way to texels so far out would not come back.
    ColorFont vast;
    vast.cellWidth = vast.cellHeight = std::numeric_limits<int>::max();
    vast.textureWidth = vast.textureHeight = 64;
    vast.glyphs['A'] = {0.0f, 1.0f - 3.4e7f, 3.4e7f, 1.0f, 2.1e9f};
    EXPECT_EQ(measureCaptionFont(vast, {}).glyphs['A'].x1, 0.0f);
}

class CaptionPixelTest : public GlTest {
protected:
    static std::string shader(const char* name) {
        std::ifstream file(std::string(GALLERY_PATH) + "/DemoSceneResources/assets/shaders/Text/" + name);
        std::ostringstream text;
        text << file.rdbuf();
        return text.str();
    }

    void SetUp() override {
        GlTest::SetUp();
        program = linkProgram(shader("LowerThird.vert"), shader("LowerThird.frag"), "caption");
        ASSERT_NE(program, 0u);
        const ColorFont font = blockFont();
        std::string png;
        ASSERT_TRUE(encodePng(blockPixels(font, "B").data(), font.textureWidth, font.textureHeight, true, png));
        show.write("font.png", png);
        show.write("font.json", R"({"texture": "font.png", "cellWidth": 10, "cellHeight": 20, "columns": 6, "rows": 1, "chars": " ABH?."})");
    }

    void TearDown() override {
        deleteTarget(target);
        releaseCaption(caption);
        deleteColorFonts();
        deleteProgram(program);
        GlTest::TearDown();
    }

    void draw(const std::string& json, bool isCreditRoll, float time, int width, int height) {
        LogCapture quiet;
        deleteTarget(target);
        target = createRenderTarget(width, height);
        bindTarget(target);
        clear(0, 0, 0, 1);
        releaseCaption(caption);
        ASSERT_TRUE(createCaption(caption, parseJson(json), isCreditRoll, kDuration, show.baseDir, program));
        drawCaption(caption, program, time, width, height);
    }

    // At pixels from the top left, as layouts count.
    Pixel at(float x, float y) { return pixel(static_cast<int>(x), target.height - 1 - static_cast<int>(y)); }

    TempShow show;
    GLuint program = 0;
    RenderTarget target;
    Caption caption;
};

TEST_F(CaptionPixelTest, LowerThirdIsWhereItsLayoutSays) {
    // 216 high: a fifth of the reference.
    draw(R"({"fontPath": "font.json", "title": "AHA", "subtitle": "", "label": "", "panelColor": [0, 0, 1, 0.5],
             "accentColor": [0, 1, 0], "alpha": 0.5, "titleScale": 4})", false, 2.0f, 384, 216);
    const CaptionRect& panel = caption.lowerThird.panel;
    const CaptionLine& title = caption.lowerThird.title[0];
    const Pixel bare = at(panel.x1 - 3.0f, panel.y0 + 3.0f), green = at(panel.x0 + 1.0f, panel.y0 + 9.0f);
    EXPECT_NEAR(bare[2], 255 * 0.25, 3);
    EXPECT_EQ(bare[0] + bare[1], 0);
    EXPECT_NEAR(green[1], 255 * 0.5, 2);
    const float letter = title.capPixels * 0.6f; // the ink's width
    const float middle = title.top + 0.5f * title.capPixels;
    EXPECT_NEAR(at(title.x + 0.5f * letter, middle)[0], 255 * 0.5, 2);
    EXPECT_NEAR(at(title.x + letter + 0.1f * title.capPixels, middle)[0], 0, 2); // between two letters
    EXPECT_PIXEL(at(200.0f, 20.0f), Pixel{0, 0, 0, 255});
    draw(R"({"fontPath": "font.json"})", false, 0.0f, 384, 216);
    EXPECT_PIXEL(at(panel.x0 + 30.0f, panel.y1 - 3.0f), Pixel{0, 0, 0, 255});
}

TEST_F(CaptionPixelTest, GlyphsTakeNothingFromTheirNeighboursAtAnySize) {
    // The cell between two red ones, much larger and much smaller than its texels.
    for (const int height : {90, 216, 1080}) {
        SCOPED_TRACE(height);
        const int width = height * 16 / 9;
        draw(R"({"fontPath": "font.json", "header": "AAA", "showLines": false, "showPanel": false, "scrollSpeed": 540})", true,
             1.0f, width, height);
        std::vector<unsigned char> rgba(static_cast<size_t>(width * height) * 4);
        glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, rgba.data());
        int brightest = 0, reddest = 0;
        for (size_t i = 0; i < rgba.size(); i += 4) {
            brightest = std::max<int>(brightest, rgba[i + 1]);
            reddest = std::max(reddest, rgba[i] - rgba[i + 1]);
        }
        EXPECT_GE(brightest, 250);
        EXPECT_LE(reddest, 1);
    }
}

} // namespace
