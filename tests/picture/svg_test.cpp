#include "support/log_capture.h"
#include "support/temp_show.h"

#include "picture/glow_mask.h"
#include "picture/svg_mask.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <regex>
#include <sstream>

namespace {

using Texts = std::vector<std::string>;

template <typename Next>
Texts allMatches(const std::string& text, Next next) {
    Texts found;
    size_t position = 0;
    std::string_view match;
    while (next(text, position, match)) found.emplace_back(match);
    return found;
}

Texts allByRegex(const std::string& text, const std::regex& pattern, int capture) {
    using Matches = std::sregex_token_iterator;
    return Texts(Matches(text.begin(), text.end(), pattern, capture), Matches());
}

// Texts that are put together from the pieces, so that they come close to a match.
std::string randomText(std::mt19937& random, const Texts& pieces, size_t most) {
    std::string text;
    for (size_t n = random() % (most + 1); n > 0; --n) text += pieces[random() % pieces.size()];
    return text;
}

TEST(SvgPatterns, MatchWhatARegexEngineMatches) {
    const std::string number = R"([-+]?(?:(?:\d*\.\d+)|(?:\d+\.?))(?:[eE][-+]?\d+)?)";
    const std::string value = R"(\s*=\s*["']([^"']+)["'])";
    const std::regex path(R"(<path\b[^>]*\bd)" + value + "[^>]*"), viewBox("viewBox" + value), numbers(number),
        tokens("[AaCcHhLlMmQqSsTtVvZz]|" + number);
    const Texts markup = {"<path", "<path ", "<",     "path",    "d",          " d", "d=",   "-d=",    "_d=",     "=",
                          "\"",    "'",      "\"\"",  " d=\"M",  " d='1",      ">",  "/>",   " ",      "\n",      "\v",
                          "x",     "0",      "id=\"", "viewBox", "viewBox=\"", "D",  "\x80", "<<path", " d\v='1'"};
    const Texts digits = {"-", "+", ".", "1", "20", "e", "E",   "e-3", ".5", "0.",
                          " ", ",", "M", "z", "x",  "A", "1e5", "--",  "e+"};
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        const std::string text = randomText(random, markup, 14);
        SCOPED_TRACE(text);
        ASSERT_EQ(allMatches(text, nextPathData), allByRegex(text, path, 1));
        const Texts boxes = allByRegex(text, viewBox, 1);
        ASSERT_EQ(findAttribute(text, "viewBox"), boxes.empty() ? "" : boxes.front());
        const std::string data = randomText(random, digits, 10);
        SCOPED_TRACE(data);
        ASSERT_EQ(allMatches(data, nextNumber), allByRegex(data, numbers, 0));
        ASSERT_EQ(allMatches(data, nextPathToken), allByRegex(data, tokens, 0));
    }
}

std::vector<SvgContour> parse(const std::string& data) {
    std::vector<SvgContour> contours;
    size_t points = 0;
    EXPECT_TRUE(parsePathData(data, contours, points));
    return contours;
}

// "x,y x,y | x,y ..." to a tenth.
std::string describe(const std::vector<SvgContour>& contours) {
    std::ostringstream text;
    for (const SvgContour& contour : contours) {
        if (&contour != &contours.front()) text << " | ";
        for (const SvgPoint& p : contour) {
            if (&p != &contour.front()) text << ' ';
            text << std::round(p.x * 10) / 10 << ',' << std::round(p.y * 10) / 10;
        }
    }
    return text.str();
}

TEST(SvgPath, LinesCloseAndContinue) {
    const std::pair<const char*, const char*> cases[] = {
        {"M0 0L10 0 10 10Z", "0,0 10,0 10,10"},
        {"m1,1 9 0 0,9z", "1,1 10,1 10,10"},                                // lines behind a move
        {"M1-2.5.5-3h-1e1V+4.", "1,-2.5 0.5,-3 -9.5,-3 -9.5,4"},            // packed numbers
        {"M0 0H4V4h-4v-1M9 9h1v1", "0,0 4,0 4,4 0,4 0,3 | 9,9 10,9 10,10"}, // a move stores the contour
        {"M5 5 6 6z", ""},                                                  // two points
        {"M1 1h2v2z l5 5 0 5 m1 0", "1,1 3,1 3,3 | 1,1 6,6 6,11"},          // behind a close from the start on
        {"M1 1h2v2zz M0 0 5 5", "1,1 3,1 3,3"},
        {"M0 0h4A5 5 0 0 1 9 9 7 7 v4 l-4 0", "0,0 4,0 4,4 0,4"}, // arcs draw nothing
        {"7 8 M0 0 x1 0 % 1 1 2 L 9 Z", "0,0 1,0 1,1"},           // numbers without a partner
    };
    for (const auto& [data, wanted] : cases) EXPECT_EQ(describe(parse(data)), wanted) << data;
}

TEST(SvgPath, CurvesHaveTheirStepsAndReflections) {
    const SvgContour cubic = parse("M0 0C0 8 8 8 8 0S16-8 16 0").at(0);
    ASSERT_EQ(cubic.size(), 49u);
    EXPECT_TRUE(cubic[12].x == 4.0f && cubic[12].y == 6.0f && cubic[36].x == 12.0f && cubic[36].y == -6.0f);
    const SvgContour quadratic = parse("M0 0q4 8 8 0t8 0T24 0").at(0);
    ASSERT_EQ(quadratic.size(), 55u);
    EXPECT_TRUE(quadratic[9].y == 4.0f && quadratic[27].y == -4.0f && quadratic[45].y == 4.0f);
    const std::pair<const char*, const char*> alike[] = {
        // Without a curve of its kind before it there is nothing to reflect.
        {"M0 0Q4 8 8 0S16 8 16 0", "M0 0Q4 8 8 0C8 0 16 8 16 0"},
        {"M0 0Q4 8 8 0L9 0T16 0", "M0 0Q4 8 8 0L9 0Q9 0 16 0"},
        {"M0 0C4 8 8 8 8 0A1 1 0 0 0 9 9S8 9 16 0", "M0 0C4 8 8 8 8 0 8 0 8 9 16 0"},
        {"m1 1c1 2 3 4 5 6s1 2 3 4q1 2 3 4t5 6h1", "M1 1C2 3 4 5 6 7S7 9 9 11Q10 13 12 15T17 21H18"},
    };
    for (const auto& [data, same] : alike) EXPECT_EQ(describe(parse(data)), describe(parse(same)));
}

// The rule as it is written: crossings of a row, sorted, filled pair by pair.
std::vector<uint8_t> fillByTheBook(const SvgDrawing& drawing, int width, int height) {
    const SvgBounds& b = drawing.bounds;
    const float margin = std::max(static_cast<float>(std::min(width, height)) * 0.03f, 4.0f);
    const float s = std::min((static_cast<float>(width) - 2 * margin) / std::max(b.maxX - b.minX, 0.001f),
                             (static_cast<float>(height) - 2 * margin) / std::max(b.maxY - b.minY, 0.001f));
    const auto map = [&](SvgPoint p) { return SvgPoint{(p.x - b.minX) * s + margin, (p.y - b.minY) * s + margin}; };
    std::vector<uint8_t> pixels(static_cast<size_t>(width * height) * 4);
    for (int row = 0; row < height; ++row) {
        const float yc = static_cast<float>(row) + 0.5f;
        std::vector<float> xs;
        for (const SvgContour& contour : drawing.contours) {
            for (size_t i = 0; i < contour.size(); ++i) {
                const SvgPoint p = map(contour[i]), q = map(contour[(i + 1) % contour.size()]);
                const bool crosses = yc >= std::min(p.y, q.y) && yc < std::max(p.y, q.y);
                if (std::fabs(q.y - p.y) < 0.0001f || !crosses) continue;
                xs.push_back(p.x + (q.x - p.x) * (yc - p.y) / (q.y - p.y));
            }
        }
        std::sort(xs.begin(), xs.end());
        for (size_t i = 0; i + 1 < xs.size(); i += 2) {
            const float first = std::clamp(std::ceil(xs[i]), 0.0f, static_cast<float>(width));
            const float last = std::clamp(std::floor(xs[i + 1]), 0.0f, static_cast<float>(width - 1));
            for (int x = static_cast<int>(first); x <= static_cast<int>(last); ++x) {
                std::fill_n(pixels.begin() + (row * width + x) * 4, 4, uint8_t{255});
            }
        }
    }
    return pixels;
}

TEST(SvgMask, FillsAsTheRuleIsWritten) {
    std::mt19937 random(11);
    for (int round = 0; round < 400; ++round) {
        SCOPED_TRACE(round);
        std::string data;
        const bool onGrid = round % 3 == 0; // crossings right on pixels, edges that touch
        const bool spills = round % 4 == 0; // beyond the view box, to the left too
        for (int n = 3 + static_cast<int>(random() % 20); n > 0; --n) {
            static const Texts commands = {"M", "L", "L", "L", "Z", "l", "H", "V", "C", "Q", "T", "S", "z"};
            data += commands[random() % commands.size()];
            for (int k = 0; k < 6; ++k) {
                const int c = static_cast<int>(random() % 1000);
                data += " " + std::to_string(onGrid ? c % 57 : c * 0.1 - (spills ? 30.0 : 0.0));
            }
        }
        SvgDrawing drawing;
        drawing.contours = parse(data);
        // An edge that is too flat, and three crossings for the last one of its row.
        const SvgContour oddRow = {{55, 8.49999f}, {30, 8.50003f}, {50, 8.50001f}, {55, 40}};
        const SvgContour threefold = {{55, 0}, {55, 20}, {55, 30}};
        if (round % 6 == 0) drawing.contours.push_back(oddRow);
        if (round % 12 == 0) drawing.contours.push_back(threefold);
        drawing.bounds = onGrid ? SvgBounds{0, 0, 56, 56} : SvgBounds{0, 0, 60, 45}; // 56: one pixel a unit
        SvgMask mask;
        ASSERT_TRUE(fillMask(drawing, onGrid ? 64 : 200 + round % 9, onGrid ? 64 : 150, mask));
        ASSERT_EQ(mask.pixels, fillByTheBook(drawing, mask.width, mask.height)) << data;
    }
}

TEST(SvgMask, SizesFollowRequestAndAspect) {
    const struct {
        float boxWidth, boxHeight;
        int requestedWidth, requestedHeight, width, height;
    } cases[] = {
        {100, 50, 1024, 1024, 1024, 512},   {100, 50, 1024, 300, 1024, 300}, {100, 100, 10, 512, 64, 64},
        {100, 100, 9000, 9000, 4096, 4096}, {1000, 1, 1024, 512, 1024, 64},  {1, 1000, 1024, 512, 1024, 512},
        {300, 200, 100, 100, 100, 67},      {100, 50, 1024, 10, 128, 64},    {0, 0, 100, 200, 100, 100},
        {3e38f, 1, 512, 512, 512, 64},      {100, 50, -5, -5, 64, 64},
    };
    for (const auto& c : cases) {
        int width = 0, height = 0;
        fitMask({0, 0, c.boxWidth, c.boxHeight}, c.requestedWidth, c.requestedHeight, width, height);
        EXPECT_TRUE(width == c.width && height == c.height) << &c - cases << ": " << width << " x " << height;
    }
}

std::string svg(const std::string& data, const std::string& attributes = "") {
    return "<svg " + attributes + "><path d=\"" + data + "\"/></svg>";
}

TEST(SvgMask, FilesAreFoundAndReported) {
    TempShow show;
    const std::string square = svg("M0 0H8V8H0ZM2 2H6V6H2Z", "viewBox=\"0 0 8 8\"");
    const std::string here = show.write("logos/a.svg", square);
    const std::string resource = show.write("DemoSceneResources/logos/b.svg", square);
    EXPECT_EQ(resolveSvgPath("logos\\a.svg", show.baseDir), here);
    EXPECT_EQ(resolveSvgPath("logos/b.svg", show.baseDir), resource);
    EXPECT_EQ(resolveSvgPath(here, show.baseDir), here);
    EXPECT_EQ(resolveSvgPath("", show.baseDir), "");

    LogCapture log;
    SvgMask mask;
    ASSERT_TRUE(rasterizeSvg("logos/a.svg", show.baseDir, 64, 64, mask));
    EXPECT_EQ(log.text(), "[SHAPETEXT] Rasterized " + here + " (64x64, 2 contours)\n");
    EXPECT_EQ(mask.pixels[(32 * 64 + 32) * 4], 0);                  // the hole
    EXPECT_EQ(mask.pixels[(32 * 64 + 8) * 4 + 3], 255);             // the frame
    show.write("short.svg", svg("M0 0H9V9H0Z", "viewBox='0 0 7'")); // counts as the unit square
    ASSERT_TRUE(rasterizeSvg("short.svg", show.baseDir, 64, 64, mask));
    EXPECT_EQ(mask.pixels.back(), 255);
}

TEST(SvgMask, HostileFilesEndSoon) {
    TempShow show;
    LogCapture log;
    const auto repeated = [](const std::string& piece, size_t bytes) {
        std::string text;
        while (text.size() < bytes) text += piece;
        return text;
    };
    constexpr size_t kMegabyte = 1 << 20;
    const std::string commands = "M1e1-2.5.5-3C1 2 3 4 5 6s7 8 9 10Q1 2 3 4t5 6A1 1 0 0 1 9 9h1v1z";
    const std::string whole = svg(commands, "viewBox=\"0 0 9 9\"");
    Texts files = {
        repeated("<path ", kMegabyte),
        repeated("<path d=", kMegabyte),
        repeated("<path d=\"", kMegabyte),
        "<path " + repeated("d=\"\" ", kMegabyte) + ">",
        "<path" + repeated(" d", kMegabyte),
        "<path d" + std::string(kMegabyte, ' '),
        repeated("viewBox = ", kMegabyte),
        std::string(kMegabyte, '\0'),
        svg(repeated("+-.e", kMegabyte)),
        svg(std::string(kMegabyte, '7')),
        svg("M0 0" + repeated("h9v9", 9 * kMegabyte)),
        svg("M0 0 1e40-1e40 1e400 5 -1e999 7 1e-999 1C1e38 3e38 -3e38 3e38 3e38-3e38l3e38 3e38 3e38 3e38z"),
        svg("M0 0H9V9z", "viewBox=\"1e38 -3e38 3e38 3e38\""),
        svg("M0 0H9V9z", "viewBox=\"0 0 -5 0\""),
    };
    std::mt19937 random(3);
    std::string noise(kMegabyte, ' ');
    for (char& c : noise) c = static_cast<char>(random());
    files.push_back(svg(noise));
    for (size_t length = 0; length < whole.size(); ++length) files.push_back(whole.substr(0, length));
    for (const std::string& file : files) {
        show.write("hostile.svg", file);
        SvgMask mask;
        const bool drawn = rasterizeSvg("hostile.svg", show.baseDir, 4096, 64, mask);
        EXPECT_EQ(drawn, !mask.pixels.empty()) << file.substr(0, 60);
        if (drawn) makeGlowMask(mask);
    }
    EXPECT_NE(log.text().find("[SHAPETEXT] SVG has more than 4194304 points: "), std::string::npos);
    show.write("dense.svg", svg("M0 0" + repeated("L9 0L0 9", kMegabyte)));
    SvgMask mask;
    EXPECT_FALSE(rasterizeSvg("dense.svg", show.baseDir, 4096, 4096, mask));
    EXPECT_NE(log.text().find("[SHAPETEXT] SVG is too dense to fill: "), std::string::npos);
}

TEST(GlowMask, FadesToDarkAtItsEdges) {
    SvgMask mask = {300, 100, std::vector<uint8_t>(300 * 100 * 4, 255)};
    const GlowMask glow = makeGlowMask(mask);
    const auto texel = [&](int x, int y) { return glow.pixels.data() + (y * glow.width + x) * 4; };
    for (int x = 0; x < glow.width; ++x) EXPECT_EQ(texel(x, 0)[0] + texel(x, glow.height - 1)[0], 0) << x;
    const uint8_t* middle = texel(glow.width / 2, glow.height / 2);
    EXPECT_TRUE(middle[0] > 240 && middle[1] == 255 && middle[2] == 255) << int{middle[0]};
    // The middle of the mask's left edge, where half of all light comes from.
    const GlowPlace place = glowPlace(300, 100);
    const float x = place.offsetX * static_cast<float>(glow.width);
    const float y = (0.5f * place.scaleY + place.offsetY) * static_cast<float>(glow.height);
    EXPECT_NEAR(texel(static_cast<int>(x), static_cast<int>(y))[1], 180, 12);
}

} // namespace
