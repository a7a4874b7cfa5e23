#include "support/allocation_count.h"
#include "support/grid_font.h"
#include "support/log_capture.h"
#include "support/picture_test.h"

#include "foundation/json.h"
#include "platform/image.h"
#include "text/caption.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kDuration = 4.0f;
constexpr const char* kLetters = " ABH?.";

// Bottom row first. The ink of every letter but the space is 6 x 10 pixels of the cell, from (2, 4) on, its left half
// white, its right half yellow; the letter `red` is red from edge to edge.
std::vector<uint8_t> blockPixels(const ColorFont& font, char red = 0) {
    std::vector<uint8_t> pixels;
    for (int y = font.textureHeight - 1; y >= 0; --y) {
        for (int x = 0; x < font.textureWidth; ++x) {
            const char c = font.chars[static_cast<size_t>(x / 10)];
            const bool inked = c == red || (c != ' ' && x % 10 >= 2 && x % 10 < 8 && y >= 4 && y < 14);
            const uint8_t green = c == red ? 0 : 255, blue = x % 10 < 5 ? green : 0, alpha = inked ? 255 : 0;
            pixels.insert(pixels.end(), {255, green, blue, alpha});
        }
    }
    return pixels;
}

CaptionFont blockLetters(const std::string& chars = kLetters) {
    const ColorFont font = gridFont(chars, static_cast<int>(chars.size()), 1);
    return measureCaptionFont(font, blockPixels(font));
}

Caption makeCaption(const std::string& json, bool isCreditRoll, float duration = kDuration) {
    static const CaptionFont letters = blockLetters();
    Caption caption;
    caption.params = readCaptionParams(parseJson(json), isCreditRoll);
    caption.duration = duration;
    caption.letters = &letters;
    return caption;
}

std::string creditsJson(int count, const std::string& more = "") {
    const std::string entry = R"({"role": "AB", "name": "BA", "subtitle": "H"})";
    std::string json = "{" + more + "\"entries\": [" + entry;
    for (int i = 1; i < count; ++i) json += ", " + entry;
    return json + "]}";
}

// What is seen of the vertices in an output of 1920 x 1080 pixels, the shadow aside; no area: nothing.
CaptionRect visible(const std::vector<float>& vertices, bool glyphsOnly = false) {
    CaptionRect box = {1920.0f, 1080.0f, 0.0f, 0.0f};
    for (size_t i = 0; i < vertices.size(); i += kCaptionQuadFloats) {
        const float* first = &vertices[i];
        const float* opposite = first + 2 * kCaptionVertexFloats;
        const bool counts = glyphsOnly ? first[9] == 1.0f : first[9] != 2.0f;
        if (!counts || std::max(first[4], opposite[4]) <= 0.0f || first[8] <= 0.0f) continue;
        const CaptionRect quad = {std::max(first[0], 0.0f), std::max(first[1], 0.0f), std::min(opposite[0], 1920.0f),
                                  std::min(opposite[1], 1080.0f)};
        if (quad.x1 <= quad.x0 || quad.y1 <= quad.y0) continue;
        box = {std::min(box.x0, quad.x0), std::min(box.y0, quad.y0), std::max(box.x1, quad.x1),
               std::max(box.y1, quad.y1)};
    }
    return box;
}

bool isEmpty(const CaptionRect& box) {
    return box.x1 <= box.x0;
}

float rightOf(const Caption& caption, const CaptionLine& line) {
    return line.x + captionWidth(*caption.letters, line.text, line.capPixels);
}

TEST(CaptionParamsTest, ReadsBringsIntoRangeAndFallsBack) {
    const auto read = [](const char* json, bool isRoll) { return readCaptionParams(parseJson(json), isRoll); };
    const CaptionParams lower = read(R"({"title": 7, "subtitle": "", "titleScale": 0,
        "enterDuration": 1e30, "enter": "Slide-Up", "anchor": "top-right", "panelColor": [0.5, "x", 9],
        "accentColor": [0, 1, 0]})",
                                     false);
    EXPECT_EQ(lower.title + lower.subtitle, "SIGNAL OPERATOR");
    EXPECT_EQ(lower.titleScale, 0.25f);
    EXPECT_EQ(lower.enterDuration, 30.0f);
    EXPECT_EQ(lower.enter, CaptionEnter::slideUp);
    EXPECT_TRUE(lower.atTop && lower.side == CaptionSide::right);
    EXPECT_FLOAT_EQ(lower.panelColor.r * 100 + lower.panelColor.g + lower.panelColor.b, 51.035f);
    EXPECT_EQ(lower.labelColor.g, 1.0f);
    EXPECT_EQ(read(R"({"anchor": "center"})", false).side, CaptionSide::center);

    const CaptionParams roll = read(R"({"panelEnabled": false, "textTint": [0, 1, 0], "nameTint": [1, 0, 0],
        "entries": [1, {}, {"name": "A"}, {"role": 2}]})",
                                    true);
    EXPECT_EQ(roll.side, CaptionSide::center);
    EXPECT_FALSE(roll.showPanel);
    EXPECT_EQ(roll.nameTint.g + 2 * roll.roleTint.g, 2.0f);
    EXPECT_EQ(roll.entries.size(), 1u);
    EXPECT_TRUE(read(R"({"panelEnabled": false, "showPanel": true})", true).showPanel);
}

TEST(CaptionParamsTest, OversizedTextsAreCutWithOneLine) {
    const std::string longest(kMaxCaptionTextBytes, 'A'), longer(1 << 20, 'A');
    std::string names = R"({"name": ")" + longer + "\"}";
    for (int i = 1; i < 100; ++i) names += R"(, {"name": ")" + longest + "\"}";
    LogCapture log;
    const auto create = [](const std::string& json, bool isCreditRoll) {
        Fonts fonts;
        Caption caption;
        const CaptionParams params = readCaptionParams(parseJson(json), isCreditRoll);
        EXPECT_FALSE(createCaption(fonts, caption, params, kDuration, "", {}, 1, 1));
        return caption.params;
    };
    const std::string font = R"("fontPath": "none", )";
    EXPECT_EQ(create(creditsJson(20000, font), true).entries.size(), kMaxCreditEntries);
    EXPECT_EQ(create("{" + font + "\"entries\": [" + names + "]}", true).entries.size(), 64u);
    EXPECT_EQ(create("{" + font + R"("title": ")" + longer + "\"}", false).title, longest);
    const std::string cut = "    [WARN] Credit roll cut: ";
    const std::string bounds = " entries of at most 8192, texts of at most 4096 bytes, together 262144\n";
    const std::string text = "    [WARN] Caption text cut to 4096 bytes\n";
    const std::string noFont = "[KTEXT] Color font json not found: none\n";
    EXPECT_EQ(log.text(), cut + "8192" + bounds + noFont + cut + "64" + bounds + noFont + text + noFont);
}

TEST(CaptionFontTest, TextsBecomeLinesOfGlyphsThatExist) {
    const CaptionFont font = blockLetters(" AB?");
    const std::pair<const char*, std::vector<std::string>> cases[] = {
        {"A\\nB\nA", {"A", "B", "A"}},
        {"A\\", {"A?"}},
        {"A\tB\r\n\n", {"A B", "", ""}},
        {"A\xC3\xA9"
         "B \xF0\x9F\x98\x80",
         {"A?B ?"}},
        {"\x80\xBF\xFF\xC3", {"????"}},
        {"", {}},
        {"A\n\n\n\n\n\nB", {"A", "", "", ""}},
    };
    for (const auto& [text, lines] : cases) EXPECT_EQ(captionLines(font, text, 4), lines) << text;
    // Neither '?' nor a cell for the space; no cell at all.
    EXPECT_EQ(captionLines(blockLetters("AB"), "A xB", 4), std::vector<std::string>{"A B"});
    EXPECT_EQ(captionLines(blockLetters(""), "A", 4), std::vector<std::string>{""});
}

TEST(CaptionFontTest, LinesAreAsWideAsTheirInkAndShrinkBeforeTheyAreCut) {
    const CaptionFont font = blockLetters(); // 10 pixels of capitals, gaps of 2
    EXPECT_FLOAT_EQ(captionWidth(font, "AB", 30.0f), 3 * (6 + 2 + 6));
    EXPECT_FLOAT_EQ(captionWidth(font, "", 10.0f), 0.0f);
    std::string line = "ABABAB"; // 46 wide
    EXPECT_FLOAT_EQ(fitCaptionLine(font, line, 10.0f, 46.0f), 10.0f);
    EXPECT_FLOAT_EQ(fitCaptionLine(font, line, 10.0f, 34.5f), 7.5f);
    EXPECT_EQ(line, "ABABAB");
    line = std::string(100, 'A');
    EXPECT_FLOAT_EQ(fitCaptionLine(font, line, 10.0f, 60.0f), 5.0f);
    EXPECT_EQ(line, std::string(12, 'A') + "..."); // 15 x 4 - 1
}

TEST(LowerThirdTest, EntersAndLeavesInEachStyle) {
    const std::pair<std::string, std::string> styles[] = {
        {"slide-left", "left"}, {"slide-right", "right"}, {"slide-up", "below"}, {"wipe", ""}, {"fade", ""},
    };
    for (const auto& [enter, from] : styles) {
        SCOPED_TRACE(enter);
        Caption caption = makeCaption(R"({"enterDuration": 1, "enter": ")" + enter + "\"}", false);
        const auto at = [&](float time) {
            buildCaption(caption, time, 1920, 1080);
            return caption.vertices;
        };
        for (const float gone : {-1.0f, 0.0f, kDuration, kDuration + 1e6f}) {
            EXPECT_TRUE(isEmpty(visible(at(gone)))) << gone;
            EXPECT_FALSE(caption.vertices.empty()) << gone; // something for the driver to compile
        }
        EXPECT_EQ(isEmpty(visible(at(0.001f))), !from.empty());
        EXPECT_TRUE(isEmpty(visible(at(0.0625f), true))) << "texts come later";
        const CaptionRect early = visible(at(0.125f)), settled = visible(at(1.0f));
        const CaptionRect& panel = caption.lowerThird.panel;
        EXPECT_NEAR(settled.x0, panel.x0, 1.0f);
        EXPECT_NEAR(settled.y1, panel.y1, 1.0f);
        EXPECT_EQ(at(2.0f), at(1.0f));
        EXPECT_EQ(early.x1 < settled.x1 - 20.0f, from == "left" || enter == "wipe");
        EXPECT_EQ(early.x0 > settled.x0 + 20.0f, from == "right");
        EXPECT_EQ(early.y0 > panel.y0 + 20.0f, from == "below");
        for (const float time : {0.125f, 0.5f, 0.75f}) EXPECT_EQ(at(time), at(kDuration - time)) << time;
    }
}

TEST(LowerThirdTest, ProgressKnowsTheEntrysLength) {
    CaptionParams params;
    const auto at = [&](float time, float duration, float delay = 0.0f) {
        return lowerThirdProgress(params, time, duration, delay);
    };
    params.enterDuration = 1.0f;
    EXPECT_FLOAT_EQ(at(0.7f, kDuration, 0.4f), 1.0f - std::pow(0.5f, 4.0f)); // half of a part's 0.6
    EXPECT_FLOAT_EQ(at(1e9f, 0.0f), 1.0f);                                   // open-ended
    EXPECT_FLOAT_EQ(at(0.25f, 0.5f), 1.0f);                                  // half of a short entry for the entrance
    EXPECT_FLOAT_EQ(at(0.5f, 0.5f), 0.0f);
    params.enterDuration = 0.0f;
    EXPECT_FLOAT_EQ(at(0.0f, kDuration), 1.0f);
    EXPECT_FLOAT_EQ(at(-0.1f, kDuration), 0.0f);
}

TEST(LowerThirdTest, ScalesWithTheOutputAndStaysInside) {
    Caption caption = makeCaption("{}", false);
    buildCaption(caption, 2.0f, 640, 360);
    const LowerThird small = caption.lowerThird;
    buildCaption(caption, 2.0f, 3840, 2160);
    EXPECT_NEAR(caption.lowerThird.panel.x1, 6.0f * small.panel.x1, 0.1f);
    EXPECT_NEAR(caption.lowerThird.title[0].capPixels, 6.0f * small.title[0].capPixels, 0.01f);

    const std::string longest = R"(", "titleScale": 16, "subtitleScale": 16,
        "subtitle": "A\nB\nA\nB\nA\nB\nA\nB\nA\nB", "title": ")" +
                                std::string(4000, 'A') + "\"}";
    const std::pair<int, int> sizes[] = {{1, 1}, {64, 36}, {640, 360}, {360, 640}, {3840, 300}, {0, -4}};
    for (const std::string anchor : {"left", "center", "right", "top-left"}) {
        caption = makeCaption(R"({"anchor": ")" + anchor + longest, false);
        for (const auto& [width, height] : sizes) {
            SCOPED_TRACE(testing::Message() << anchor << " " << width << " x " << height);
            buildCaption(caption, 2.0f, width, height);
            const CaptionRect& panel = caption.lowerThird.panel;
            const float w = static_cast<float>(std::max(width, 1)), h = static_cast<float>(std::max(height, 1));
            EXPECT_TRUE(panel.x0 > 0.049f * w && panel.x1 < 0.951f * w && panel.y1 < 0.916f * h);
            EXPECT_GT(caption.lowerThird.badge.y0, 0.084f * h);
            EXPECT_LE(rightOf(caption, caption.lowerThird.title[0]), panel.x1 + 0.1f);
            for (const float value : caption.vertices) ASSERT_TRUE(std::isfinite(value));
        }
    }
}

TEST(CreditRollTest, FitsItsEntryExactly) {
    Caption caption = makeCaption(creditsJson(40), true, 20.0f);
    const auto seenAt = [&](float time) {
        buildCaption(caption, time, 1920, 1080);
        return visible(caption.vertices, true);
    };
    const CaptionRect first = seenAt(0.0f), middle = seenAt(10.0f), last = seenAt(20.0f);
    const CreditRoll& roll = caption.creditRoll;
    const float aroundInk = 0.5f * roll.overhang; // cells reach further than their ink
    EXPECT_FLOAT_EQ(roll.rows.front().top, 0.0f);
    EXPECT_GT(first.y0, 1080.0f - aroundInk);
    EXPECT_GT(middle.y1, 1000.0f);
    EXPECT_LT(last.y1, aroundInk);
    EXPECT_NEAR(creditSpeed(roll, caption.params, 20.0f) * 20.0f, 1080.0f + roll.rows.back().bottom, 0.01f);
    EXPECT_GT(creditSpeed(roll, caption.params, 0.0f), 0.0f); // open-ended
    caption.params.scrollSpeed = 100.0f;
    const CreditRoll large = layoutCreditRoll(caption.params, *caption.letters, 3840, 2160);
    EXPECT_FLOAT_EQ(creditSpeed(large, caption.params, 20.0f), 200.0f);
}

TEST(CreditRollTest, ColumnsMeetAtTheGutterAndCentredLinesAtTheMiddle) {
    const std::string entries = R"("showHeader": false,
        "entries": [{"role": "ABA", "name": "B"}, {"role": "A", "name": "BAB"}]})";
    Caption centred = makeCaption(R"({"align": "center", )" + entries, true);
    Caption columns = makeCaption("{" + entries, true);
    buildCaption(centred, 1.0f, 1920, 1080);
    for (const CaptionLine& line : centred.creditRoll.lines) {
        EXPECT_NEAR(0.5f * (line.x + rightOf(centred, line)), 960.0f, 0.01f);
    }
    buildCaption(columns, 1.0f, 1920, 1080);
    const auto& lines = columns.creditRoll.lines;
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_NEAR(rightOf(columns, lines[0]), rightOf(columns, lines[2]), 0.01f);
    EXPECT_FLOAT_EQ(lines[1].x, lines[3].x);
    EXPECT_FLOAT_EQ(lines[0].top + lines[0].capPixels, lines[1].top + lines[1].capPixels); // one baseline
    EXPECT_NEAR(0.5f * (rightOf(columns, lines[0]) + lines[1].x), 960.0f, 0.01f);
}

TEST(CreditRollTest, BlocksShareTheirTime) {
    Caption caption = makeCaption(creditsJson(30, R"("mode": "blocks", "fadeDuration": 0.5, )"), true, 12.0f);
    buildCaption(caption, 0.0f, 1920, 1080);
    const CreditRoll& roll = caption.creditRoll;
    const size_t count = roll.groups.size();
    ASSERT_GE(count, 3u);
    const float headerBottom = roll.rows[roll.headerRows - 1].bottom + roll.headerDy;
    size_t rows = roll.headerRows;
    for (const CreditGroup& group : roll.groups) {
        EXPECT_EQ(group.firstRow, rows);
        rows += group.rowCount;
        EXPECT_GE(roll.rows[group.firstRow].top + group.dy, headerBottom);
        EXPECT_LE(roll.rows[rows - 1].bottom + group.dy, 1080.0f);
    }
    EXPECT_EQ(rows, roll.rows.size());

    const float each = 12.0f / static_cast<float>(count);
    const auto expectMoment = [&](float time, float duration, size_t group, float alpha) {
        const CreditMoment moment = creditMoment(roll, caption.params, time, duration);
        EXPECT_EQ(moment.group, group) << time;
        EXPECT_NEAR(moment.arrival * moment.stay, alpha, 1e-4f) << time;
    };
    expectMoment(-1.0f, 12.0f, count, 0.0f);
    expectMoment(each + 0.25f, 12.0f, 1, 0.5f);
    expectMoment(each * 1.5f, 12.0f, 1, 1.0f);
    expectMoment(each * 2.0f - 0.25f, 12.0f, 1, 0.5f);
    expectMoment(12.0f, 12.0f, count, 0.0f);
    expectMoment(1e30f, 0.0f, count - 1, 1.0f); // open-ended: the last one stays
    caption.params.blockDuration = 5.0f;
    expectMoment(8.0f, 12.0f, 1, 1.0f);

    // A heading goes with what it heads.
    Caption headed = makeCaption(R"({"mode": "blocks", "nameScale": 8, "roleScale": 8, "entries": [
        {"name": "A"}, {"role": "B"}, {"name": "A"}, {"role": "B"}, {"name": "A"}]})",
                                 true);
    buildCaption(headed, 0.0f, 1920, 1080);
    ASSERT_EQ(headed.creditRoll.groups.size(), 3u);
    EXPECT_EQ(headed.creditRoll.groups[0].rowCount, 1u);
}

TEST(CaptionTest, LongRollsCostWhatIsSeenAndSteadyFramesAllocateNothing) {
    LogCapture quiet;
    Caption roll = makeCaption(creditsJson(9000), true, 600.0f), lower = makeCaption("{}", false);
    buildCaption(roll, 0.0f, 640, 360);
    buildCaption(lower, 0.0f, 640, 360);
    const long before = allocationCount();
    for (float time = 1.0f; time < 600.0f; time += 7.0f) {
        buildCaption(roll, time, 640, 360);
        buildCaption(lower, time * 0.007f, 640, 360);
        ASSERT_LE(roll.vertices.size(), 200 * kCaptionQuadFloats) << time;
    }
    EXPECT_EQ(allocationCount(), before);
}

TEST(CaptionTest, HostileTimesAndTextsStayFinite) {
    const std::string entries = R"("entries": [{"name": ")" + std::string(4096, 'A') + R"("}, {"role": ")" +
                                std::string(3000, '\n') + R"(A"}], )";
    for (const std::string mode : {"scroll", "blocks"}) {
        Caption caption = makeCaption("{" + entries + R"("rowSpacing": 0, "nameScale": 0, "lineSpacing": 0,
            "roleColumnWidth": 1e9, "mode": ")" +
                                          mode + "\"}",
                                      true);
        for (const float time : {-1.0f, 0.0f, 1e-30f, 2.0f, 3.4e38f, INFINITY}) {
            SCOPED_TRACE(testing::Message() << mode << " " << time);
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
    ColorFont vast = gridFont("A", 1, 1);
    vast.cellWidth = vast.cellHeight = std::numeric_limits<int>::max();
    vast.glyphs['A'] = {0.0f, 1.0f - 3.4e7f, 3.4e7f, 1.0f, 2.1e9f};
    EXPECT_EQ(measureCaptionFont(vast, {}).glyphs['A'].x1, 0.0f);
}

class CaptionPixelTest : public PictureTest {
protected:
    CaptionPixelTest() : PictureTest("Text/LowerThird", 384, 216) { // a fifth of the reference
        const std::vector<uint8_t> pixels = blockPixels(gridFont(kLetters, 6, 1), 'B');
        std::string png;
        EXPECT_TRUE(encodePng(pixels.data(), 60, 20, true, png, {.bottomFirst = true}));
        show.write("font.png", png);
        show.write("font.json", R"({"texture": "font.png", "cellWidth": 10, "cellHeight": 20, "columns": 6,
            "rows": 1, "chars": " ABH?."})");
    }

    // Draws into the picture and tells what it drew.
    Caption draw(const std::string& rest, bool isCreditRoll, float time) {
        LogCapture quiet;
        Caption caption;
        const CaptionParams params = readCaptionParams(parseJson(R"({"fontPath": "font.json", )" + rest + "}"),
                                                       isCreditRoll);
        EXPECT_TRUE(createCaption(fonts, caption, params, kDuration, show.baseDir, program, width, height));
        drawCaption(caption, program, values, drawAt(time));
        deleteVertexStream(caption.stream);
        return caption;
    }
};

TEST_F(CaptionPixelTest, LowerThirdIsWhereItsLayoutSays) {
    const Caption caption = draw(R"("title": "AHA", "subtitle": "", "label": "", "panelColor": [0, 0, 1, 0.5],
        "accentColor": [0, 1, 0], "alpha": 0.5, "titleScale": 4)",
                                 false, 2.0f);
    const CaptionRect panel = caption.lowerThird.panel;
    const Pixel bare = at(panel.x1 - 3, panel.y0 + 3);
    EXPECT_TRUE(bare[0] + bare[1] == 0 && std::abs(bare[2] - 64) <= 3) << bare[2];
    EXPECT_NEAR(at(panel.x0 + 1, panel.y0 + 9)[1], 128, 2);
    const CaptionLine& title = caption.lowerThird.title[0];
    const float cap = title.capPixels; // a letter's ink is 0.6 of it wide
    const auto ink = [&](float x, float y) { return at(title.x + x * cap, title.top + y * cap); };
    for (const float y : {0.1f, 0.9f}) EXPECT_TRUE(ink(0.1f, y)[0] > 125 && ink(0.5f, y)[0] > 125) << y;
    EXPECT_GT(ink(0.1f, 0.5f)[2], ink(0.5f, 0.5f)[2] + 60); // white, yellow
    // Between two letters, above and below.
    EXPECT_EQ(ink(0.7f, 0.5f)[0] + ink(0.3f, -0.2f)[0] + ink(0.3f, 1.2f)[0], 0);
    EXPECT_PIXEL(at(200, 20), Pixel{0, 0, 0, 255});
    startPicture(384, 216);
    draw(R"("title": "A")", false, 0.0f);
    EXPECT_PIXEL(at(panel.x0 + 30, panel.y1 - 3), Pixel{0, 0, 0, 255});
}

TEST_F(CaptionPixelTest, PanelsFadeAndTheirEdgeCutsTexts) {
    // A part that sets out at share d of an entrance of 1 s has come in 1 - (1 - (t - d) / 0.6)^4 of its way.
    const auto timeOf = [](float delay, float progress) {
        return delay + 0.6f * (1.0f - std::pow(1.0f - progress, 0.25f));
    };
    const std::string look = R"("subtitle": "", "label": "", "panelColor": [0, 0, 1, 0.8], "accentWidth": 0,
        "enterDuration": 1, "titleScale": 4, "title": "A", "enter": )";
    const CaptionRect panel = draw(look + "\"fade\"", false, timeOf(0.0f, 0.25f)).lowerThird.panel;
    EXPECT_NEAR(at(panel.x1 - 5, panel.y0 + 5)[2], 255 * 0.8 * 0.25, 2);

    // Wiped open to three quarters of the letter, whose opacity is the share of the panel that is open: its left half
    // is white, the quarter after that yellow, and nothing more is there of it, though the panel is.
    const CaptionLine title = draw(look + "\"wipe\"", false, 2.0f).lowerThird.title[0];
    const float letter = 0.6f * title.capPixels;
    const float open = (title.x + 0.75f * letter - panel.x0) / (panel.x1 - panel.x0);
    startPicture(384, 216);
    draw(look + "\"wipe\"", false, timeOf(0.16f, open));
    const int ink = static_cast<int>(255 * open), behind = static_cast<int>(204 * (1 - open));
    const std::pair<float, Pixel> cases[] = {
        {0.4f, {ink, ink, ink + behind, 0}}, {0.65f, {ink, ink, behind, 0}}, {0.85f, {0, 0, 204, 0}}};
    for (const auto& [share, wanted] : cases) {
        Pixel seen = at(title.x + share * letter, title.top + 0.5f * title.capPixels);
        seen[3] = 0;
        EXPECT_TRUE(isNear(seen, wanted, 4)) << share << ": " << testing::PrintToString(seen);
    }
}

TEST_F(CaptionPixelTest, GlyphsTakeNothingFromTheirNeighboursAtAnySize) {
    // The cell between two red ones, much larger and much smaller than its texels.
    for (const int lines : {90, 216, 1080}) {
        SCOPED_TRACE(lines);
        startPicture(lines * 16 / 9, lines);
        draw(R"("header": "AAA", "showLines": false, "showPanel": false, "scrollSpeed": 540)", true, 1.0f);
        std::vector<uint8_t> rgba(static_cast<size_t>(width * height) * 4);
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
