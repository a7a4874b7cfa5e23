#include "support/allocation_count.h"
#include "support/grid_font.h"
#include "support/log_capture.h"
#include "support/picture_test.h"

#include "foundation/json.h"
#include "text/kinetic_text.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr int kOutputWidth = 200, kOutputHeight = 100; // pixels

ColorFont makeFont(const std::string& chars = "ABCDEFG? H") {
    return gridFont(chars, 4, 3);
}

struct Box {
    double x, y, width, height; // unrotated, in pixels
    double angle, u0, v0, u1, v1, alpha;
};

Box boxAt(const std::vector<float>& vertices, size_t index) {
    const float* topLeft = &vertices[index * 30];
    const float *bottomLeft = topLeft + 5, *bottomRight = topLeft + 10, *topRight = topLeft + 25;
    EXPECT_TRUE(std::equal(topLeft, topLeft + 5, topLeft + 15));
    EXPECT_TRUE(std::equal(bottomRight, bottomRight + 5, topLeft + 20));
    const double right = topRight[0] - topLeft[0], down = topRight[1] - topLeft[1];
    const double width = std::hypot(right, down);
    const double height = std::hypot(bottomLeft[0] - topLeft[0], bottomLeft[1] - topLeft[1]);
    EXPECT_NEAR((bottomLeft[0] - topLeft[0]) / height, -down / width, 1e-3); // a quarter turn on
    EXPECT_NEAR((bottomLeft[1] - topLeft[1]) / height, right / width, 1e-3);
    const double centerX = (topLeft[0] + bottomRight[0]) / 2.0, centerY = (topLeft[1] + bottomRight[1]) / 2.0;
    return {centerX - width / 2, centerY - height / 2, width,          height,     std::atan2(down, right),
            topLeft[2],          bottomLeft[3],        bottomRight[2], topLeft[3], topLeft[4]};
}

// Parameters in which nothing moves but what a case sets: the first of a key counts.
std::string still(const std::string& rest) {
    return "{" + rest + R"(, "animation": "still", "revealMode": "none", "scale": 2, "tracking": -1,
        "lineSpacing": 1.5, "align": "left", "x": 0.5, "y": 0.5})";
}

class Built {
public:
    explicit Built(const std::string& rest, ColorFont with = makeFont())
        : font(std::move(with)), params(parseKineticTextParams(parseJson(still(rest)))),
          layout(layoutKineticText(params, font)) {
        reserveKineticGeometry(params, layout, geometry);
    }
    Built& at(float time) {
        buildKineticGeometry(params, layout, time, kOutputWidth, kOutputHeight, geometry);
        return *this;
    }
    Box box(size_t index) const { return boxAt(geometry.glyphs, index); }
    size_t count() const { return geometry.glyphVertices / 6; }

    ColorFont font;
    KineticTextParams params;
    KineticLayout layout;
    KineticGeometry geometry;
};

// The hash in 64-bit arithmetic, cut to 32 bits.
double lot(uint64_t n) {
    constexpr uint64_t kLow = 0xffffffff;
    n &= kLow;
    n = (n ^ (n >> 16)) * 0x7feb352d & kLow;
    n = (n ^ (n >> 15)) * 0x846ca68b & kLow;
    return static_cast<double>(n ^ (n >> 16)) * 2.3283064e-10;
}

double both(uint64_t n) {
    return 2 * lot(n) - 1;
}

double sign(uint64_t n) {
    return lot(n) < 0.5 ? -1 : 1;
}

TEST(KineticParams, ReadAndClampedKeyByKey) {
    const auto read = [](const std::string& json) { return parseKineticTextParams(parseJson(json)); };
    const KineticTextParams low = read(R"({"scale": 0, "lineSpacing": -1, "writeSpeed": 0, "scrambleRate": 0,
        "glitchRate": 0, "stagger": -3, "alpha": 7, "tracking": "3", "waveSpeed": 1e999,
        "position": [3, 4], "positionX": 5, "x": 6, "positionY": 5, "y": null,
        "outlineGlowColor": [1, "red", 0.5, 2]})");
    EXPECT_EQ((std::array{low.scale, low.lineSpacing, low.writeSpeed}), (std::array{0.01f, 0.1f, 0.01f}));
    EXPECT_EQ((std::array{low.scrambleRate, low.glitchRate, low.stagger}), (std::array{1.0f, 0.1f, 0.0f}));
    EXPECT_EQ(low.alpha, 1.0f);
    EXPECT_TRUE(low.tracking == KineticTextParams{}.tracking && low.waveSpeed == KineticTextParams{}.waveSpeed);
    EXPECT_TRUE(low.positionX == 6.0f && low.positionY == 5.0f);
    EXPECT_EQ(low.glowColor, (std::array{1.0f, 0.95f, 0.5f}));

    const KineticTextParams odd = read(R"({"text": "", "position": ["3", 4], "outlineGlowColor": [1, 1]})");
    EXPECT_EQ(odd.text, "WE ARE THE SIGNAL");
    EXPECT_TRUE(odd.positionX == 0.5f && odd.positionY == 4.0f);
    EXPECT_EQ(odd.glowColor, (std::array{0.2f, 0.95f, 1.0f}));
    EXPECT_EQ(read(R"({"text": "a\\\\n\\t\\"})").text, "a\\\n\\t\\");
    EXPECT_EQ(read("{\"text\": \"" + std::string(1 << 20, 'x') + "\"}").text.size(), kKineticMaxBytes);
}

TEST(KineticGeometry, LinesStandByTheirWidths) {
    const std::pair<std::string, std::vector<std::pair<double, double>>> cases[] = {
        // and the top left corners
        {R"("text": "AB C")", {{100, 50}, {119, 50}, {147, 50}}}, // a space takes no quad
        // By the width without the last tracking.
        {R"("text": "AB C", "align": "right")", {{33, 50}, {52, 50}, {80, 50}}},
        {R"("text": "AB\\n\\nC", "align": "center")", {{80.5, 50}, {99.5, 50}, {90, 170}}},
        // A missing character counts in no width, nor does one alone take tracking off.
        {R"("text": "AzB", "align": "right")", {{61, 50}, {80, 50}, {99, 50}}},
        {R"("text": "z", "align": "right", "tracking": 30)", {{100, 50}}},
        {R"("text": "AA", "align": "right", "tracking": -50)", {{100, 50}, {70, 50}}}, // never below zero
        {R"("text": "A", "x": 1.5, "y": -20)", {{1.5, -20}}},                          // beyond 0 to 1 are pixels
        {R"("text": "A", "x": 1, "y": 0)", {{200, 0}}},
    };
    for (const auto& [json, corners] : cases) {
        SCOPED_TRACE(json);
        const Built text = Built(json).at(1.0f);
        ASSERT_EQ(text.count(), corners.size());
        for (size_t i = 0; i < corners.size(); ++i) {
            const Box box = text.box(i);
            EXPECT_NEAR(box.x, corners[i].first, 1e-4);
            EXPECT_NEAR(box.y, corners[i].second, 1e-4);
            EXPECT_TRUE(std::abs(box.width - 20) < 1e-4 && std::abs(box.height - 40) < 1e-4);
        }
    }
    EXPECT_EQ(Built(R"("text": "A", "scale": 3e38)").at(0).count(), 0u); // nothing infinite
}

TEST(KineticGeometry, MissingGlyphsHaveStandIns) {
    const Built first = Built(R"("text": "zC")", makeFont("BC")).at(0); // no '?'
    EXPECT_EQ(first.box(0).u1, 0.25);
    EXPECT_NEAR(first.box(1).x, 119, 1e-4);
    const Built nothing = Built(R"("text": "z C")", makeFont("")).at(0);
    EXPECT_EQ(nothing.box(1).u1 + nothing.box(1).v1, 0);
    EXPECT_NEAR(nothing.box(1).x, 109, 1e-4); // spaces alone advance
}

TEST(KineticGeometry, RevealsOverTime) {
    const struct {
        std::string text, mode, animation, speed;
        float time;
        size_t wanted;
        double lastAlpha;
    } cases[] = {
        {"AB CD", "character", "still", "10", 0.0f, 1, 0.15},
        {"AB CD", "character", "still", "10", 0.25f, 3, 0.5},
        {"AB CD", "any", "still", "10", 9.0f, 4, 1},
        {"ABC", "character", "still", "1e30", 1e30f, 3, 1},
        {"AB CD", "none", "still", "10", 0.0f, 4, 1},
        {"AB CD", "none", "typeon", "10", 0.15f, 2, 0.5},
        {"ABC", "character", "scramble", "10", 0.15f, 2, 0.65},
        {"ABC", "none", "scramble", "10", 0.0f, 3, 1},
        // A space between words and a line's last character end a word; leading spaces do not, two end two.
        {"AB CD", "word", "still", "1", 0.5f, 2, 0.5},
        {"AB CD", "word", "still", "1", 1.5f, 4, 0.5},
        {"AB\\nCD", "word", "still", "1", 1.5f, 4, 0.5},
        {" A  B", "word", "still", "1", 1.5f, 1, 1},
        {" A  B", "word", "still", "1", 2.5f, 2, 0.5},
        {"A  \\n B", "word", "still", "1", 1.5f, 2, 0.5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.text << ", " << c.mode << ", " << c.animation << " at " << c.time);
        const std::string look = R"(", "revealMode": ")" + c.mode + R"(", "animation": ")" + c.animation + '"';
        const Built text = Built("\"text\": \"" + c.text + look + ", \"writeSpeed\": " + c.speed).at(c.time);
        ASSERT_EQ(text.count(), c.wanted);
        EXPECT_NEAR(text.box(c.wanted - 1).alpha, c.lastAlpha, 1e-5);
    }
}

TEST(KineticGeometry, AnimationsFollowTheirFormulas) {
    const float t = 0.7f;
    const Built wave = Built(R"("text": "AB\nCD", "animation": "wave", "waveAmount": 8, "waveSpeed": 3)").at(t);
    EXPECT_NEAR(wave.box(2).y, 50 + 60 + std::sin(0.7 * 3 + 2 * 0.65) * 8, 1e-4);

    const Box punched = Built(R"("text": "ABC", "animation": "punch", "punchAmount": 0.5, "punchDecay": 2,
        "stagger": 0.2)")
                            .at(t)
                            .box(2);
    const double punch = std::exp(-(0.7 - 2 * 0.2) * 2) * 0.5;
    EXPECT_NEAR(punched.width, 20 * (1 + punch), 1e-4);
    EXPECT_NEAR(punched.x, 138 - 10 * punch, 1e-4);
    EXPECT_NEAR(punched.y, 50 - punch * 40 * 0.35 - 20 * punch, 1e-4);

    const Built burst = Built(R"("text": "ABCDEFGH A B", "animation": "explode", "explodeAmount": 90,
        "explodeSpeed": 1.5, "explodeSpin": 0.3, "explodeFade": 0.6, "stagger": 0.05)")
                            .at(t);
    for (const uint64_t c : {0u, 4u, 8u, 9u}) {
        SCOPED_TRACE(c);
        const uint64_t base = c * 0x16a95 + (c < 8 ? 0 : c - 7) * 0x10d35;
        const double e = 1 - std::exp(-(0.7 - static_cast<double>(c) * 0.05) * 1.5), s = (3 - 2 * e) * e * e;
        const double angle = both(base + 0x1b6) * std::numbers::pi + lot(base + 0x1bc) * std::numbers::pi;
        const double dx = std::cos(angle), dy = std::sin(angle) - 0.35 - lot(base + 0x1c4) * 0.55;
        const double reach = (lot(base + 0x1d0) * 0.9 + 0.35) * 90 * s / std::hypot(dx, dy);
        const double size = (lot(base + 0x1e2) * 0.35 + 0.1) * s + 1;
        const double pen = 100 + static_cast<double>(c) * 19 + (c < 8 ? 0 : static_cast<double>(c - 7) * 9);
        const Box box = burst.box(c);
        EXPECT_NEAR(box.width, 20 * size, 1e-3);
        EXPECT_NEAR(box.x, pen - 10 * (size - 1) + dx * reach, 2e-3);
        EXPECT_NEAR(box.y, 50 - 20 * (size - 1) + dy * reach, 2e-3);
        EXPECT_NEAR(box.alpha, 1 - s * 0.6, 1e-5);
        EXPECT_NEAR(box.angle, sign(base + 0x1da) * 0.3 * 2 * std::numbers::pi * s, 1e-4);
    }
}

TEST(KineticGeometry, ScrambledLettersAreTheFontsOwn) {
    const std::string font = "A AB?  CC";
    Built text(R"("text": "ABCz AB", "animation": "scramble", "revealMode": "character", "writeSpeed": 10,
        "scrambleDuration": 0.5, "scrambleRate": 20)",
               gridFont(font, 3, 3));
    const std::string shown = "ABCzAB";
    for (int frame = 0; frame < 60; ++frame) {
        const float time = static_cast<float>(frame) * 0.021f;
        text.at(time);
        for (size_t i = 0; i < text.count(); ++i) {
            SCOPED_TRACE(testing::Message() << "glyph " << i << " at " << time);
            const double age = static_cast<double>((time * 10.0f - static_cast<float>(i)) / 10.0f);
            char wanted = shown[i] == 'z' ? '?' : shown[i];
            if (age < 0.5) {
                uint64_t n = i * 0x16a95 + static_cast<uint64_t>(age * 20) * 0x4eb + (i < 4 ? 0 : 1) * 0x10d35 +
                             static_cast<uint64_t>(shown[i]);
                n = ((n ^ (n >> 16)) * 0x7feb352d) & 0xffffffffu;
                size_t at = (n ^ (n >> 16)) % font.size();
                while (font[at] == ' ' || font[at] == shown[i]) at = (at + 1) % font.size();
                wanted = font[at];
            }
            EXPECT_NEAR(text.box(i).u0, text.font.glyphs[wanted].u0, 1e-6);
            EXPECT_NEAR(text.box(i).v0, text.font.glyphs[wanted].v0, 1e-6);
        }
    }
}

struct Glitched {
    double x = 0, y = 0, u = 0, v = 0, alpha = 1; // u and v in texels
    bool isStrong = false;
};

Glitched glitched(const std::string& style, uint64_t c, uint64_t word, uint64_t step, double amount) {
    const double g = std::min(amount, 3.0), jitter = 4, flicker = 0.5;
    const uint64_t s = c * 0x16a95 + step * 0x4eb + word * 0x10d35;
    const uint64_t b = c / 6 * 0x4c7 + step * 0x32b + word * 0x61;
    Glitched r;
    if (style == "vhs") {
        if (lot(b + 5) > std::clamp(g * 0.18 + 0.24, 0.1, 0.82)) return r;
        const double amp = jitter * std::max(g * 1.35, 0.8), side = sign(b + 0x11);
        const double dimming = std::clamp((g * 0.35 + 0.45) * flicker, 0.0, 0.7);
        r = {(lot(s + 0x13) * 1.6 + 0.5) * side * amp, both(s + 0x1f) * amp * 0.08,
             side * std::min(g * 0.45 + 0.9, 2.4), both(b + 0x1d) * std::min(g * 0.08 + 0.08, 0.45),
             1 - lot(s + 0x47) * dimming};
        r.isStrong = lot(b + 0x2b) > 0.93 - g * 0.05;
        if (r.isStrong) r = {r.x + side * amp * 1.9, r.y, r.u * 1.75, r.v, r.alpha * 0.86, true};
        r.alpha = std::clamp(r.alpha, 0.3, 1.0);
    } else if (style == "corrupt") {
        if (lot(s + 7) > std::clamp(g * 0.24 + 0.32, 0.14, 0.96)) return r;
        const double amp = jitter * std::max(g * 1.7, 1.1), side = sign(s + 0x7f);
        const double dimming = std::clamp((g * 0.45 + 0.85) * flicker, 0.0, 0.98);
        r = {both(s + 0x11) * amp * 1.25, both(s + 0x1f) * amp * 0.65, both(s + 0x2f) * std::min(g * 0.7 + 1.1, 3.2),
             both(s + 0x3b) * std::min(g * 0.35 + 0.45, 1.7), 1 - lot(s + 0x47) * dimming};
        r.isStrong = lot(s + 0x71) > 0.83 - g * 0.08;
        const double jump = both(s + 0x83) * amp * 0.9;
        if (r.isStrong) r = {r.x + side * amp * 2.4, r.y + jump, r.u, r.v * 1.6, r.alpha * 0.62, true};
        r.alpha = std::clamp(r.alpha, 0.12, 1.0);
    } else {
        if (lot(s + 0xb) > std::clamp(g * 0.22 + 0.18, 0.08, 0.9)) return r;
        const double amp = g * jitter, side = sign(s + 0x65);
        const double dimming = std::clamp(g * flicker * 0.85, 0.0, 0.9);
        r = {both(s + 0x11) * amp, both(s + 0x1f) * amp * 0.25, both(s + 0x2f) * std::min(g * 0.25 + 0.35, 1.35),
             both(s + 0x3b) * std::min(g * 0.15 + 0.2, 0.85), 1 - lot(s + 0x47) * dimming};
        r.isStrong = lot(s + 0x61) > 0.89 - g * 0.08;
        if (r.isStrong) r = {r.x + side * amp * 1.5, r.y, r.u, r.v, r.alpha * 0.8, true};
        r.alpha = std::clamp(r.alpha, 0.18, 1.0);
    }
    return r;
}

TEST(KineticGeometry, GlitchStylesFollowTheirFormulas) {
    for (const std::string style : {"digital", "vhs", "corrupt", "another"}) {
        for (const double amount : {0.3, 1.0, 10.0}) {
            SCOPED_TRACE(testing::Message() << style << " " << amount);
            Built text(R"("text": "AAAAAAAAAAAAAAAAAAAA AAAA", "glitchEnabled": true, "glitchJitter": 4,
                "glitchFlicker": 0.5, "glitchRate": 10, "glitchAmount": )" +
                       std::to_string(amount) + R"(, "glitchStyle": ")" + style + '"');
            int misses = 0, strong = 0;
            for (uint64_t i = 0; i < 20 * 24; ++i) {
                const uint64_t step = i / 24, c = i % 24, word = c < 20 ? 0 : 1;
                const Glitched wanted = glitched(style, c, word, step, amount);
                const Box box = text.at((static_cast<float>(step) + 0.5f) / 10.0f).box(c);
                EXPECT_NEAR(box.x, 100 + static_cast<double>(c * 19 + word * 9) + wanted.x, 1e-3);
                EXPECT_NEAR(box.y, 50 + wanted.y, 1e-3);
                EXPECT_NEAR(box.u0 * 40, wanted.u, 1e-4);
                EXPECT_NEAR((box.v1 - 1) * 60, wanted.v, 1e-4);
                EXPECT_NEAR(box.alpha, wanted.alpha, 1e-5);
                misses += wanted.x == 0;
                strong += wanted.isStrong;
            }
            EXPECT_TRUE(misses > 0 && strong > 0) << misses << ", " << strong;
        }
    }
}

TEST(KineticGeometry, SteadyFramesTakeNoMemoryAndEqualTimesGiveEqualBytes) {
    Built text(R"("text": "ABCD EFGH", "animation": "explode", "revealMode": "character", "writeSpeed": 10,
        "outlineGlowEnabled": true, "outlineGlowRadius": 2, "glitchEnabled": true)");
    const long before = allocationCount();
    for (int i = 0; i < 40; ++i) text.at(static_cast<float>(i) * 0.03f);
    EXPECT_EQ(allocationCount(), before);

    const std::vector<float> glyphs = text.at(0.6f).geometry.glyphs, glow = text.geometry.glow;
    text.at(0.1f).at(0.6f);
    EXPECT_EQ(text.geometry.glyphs, glyphs);
    EXPECT_EQ(text.geometry.glow, glow);
    ASSERT_EQ(glow.size(), glyphs.size());
    const Box glyph = boxAt(glyphs, 5), halo = boxAt(glow, 5); // grown by 2 texels x scale 2 x 1.5 on each side
    EXPECT_NEAR(halo.x, glyph.x - 6, 1e-3);
    EXPECT_NEAR(halo.width, glyph.width + 12, 1e-3);
    EXPECT_NEAR(halo.height, glyph.height + 12, 1e-3);
    EXPECT_NEAR(halo.angle, glyph.angle, 1e-4);
}

class KineticPictures : public PictureTest {
protected:
    KineticPictures() : PictureTest("kinetictext/KineticText", kOutputWidth, kOutputHeight) {}

    // Solid cells: A is red, B green, every other one transparent.
    static GLuint makeAtlas() {
        const GLuint texture = solidTexture({0, 0, 0, 0}, 40, 60);
        using Texels = std::vector<std::array<uint8_t, 4>>;
        const Texels red(10 * 20, {255, 0, 0, 255}), green(10 * 20, {0, 255, 0, 255});
        glTexSubImage2D(GL_TEXTURE_2D, 0, 0, 40, 10, 20, GL_RGBA, GL_UNSIGNED_BYTE, red.data());
        glTexSubImage2D(GL_TEXTURE_2D, 0, 10, 40, 10, 20, GL_RGBA, GL_UNSIGNED_BYTE, green.data());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        return texture;
    }

    void drawText(const std::string& json, ColorFont font, float time) {
        static const GLuint atlas = makeAtlas();
        font.texture = atlas;
        KineticText text;
        createKineticText(text, parseKineticTextParams(parseJson(json)), std::move(font), program);
        drawKineticText(text, program, values, drawAt(time));
        releaseKineticText(text);
    }
    void drawText(const std::string& rest) { drawText(still(rest), makeFont(), 1.0f); }
};

TEST_F(KineticPictures, GlyphsCoverTheirCells) {
    clear(0, 0, 1, 1);
    drawText(R"("text": "AB", "x": 40, "y": 30, "alpha": 0.6, "tracking": 0)");
    const Pixel blue = {0, 0, 255, 255}, redOverBlue = {153, 0, 255, 255}; // additive
    EXPECT_PIXEL(at(40, 30), redOverBlue);
    EXPECT_PIXEL(at(59, 69), redOverBlue);
    EXPECT_PIXEL(at(60, 30), Pixel{0, 153, 255, 255});
    EXPECT_PIXEL(at(39, 30), blue);
    EXPECT_PIXEL(at(40, 29), blue);
    EXPECT_PIXEL(at(40, 70), blue);
    drawText(R"("text": "A", "x": 100, "y": 30, "alpha": 0.6, "blendMode": "normal")");
    EXPECT_PIXEL(at(110, 40), Pixel{153, 0, 102, 193}); // 0.6 over blue
}

TEST_F(KineticPictures, GlowSurroundsItsGlyphAlone) {
    const std::string glow = R"("x": 80, "y": 30, "outlineGlowEnabled": true, "outlineGlowRadius": 4,
        "outlineGlowColor": [0, 0, 1], )";
    drawText(glow + R"("text": "C")"); // transparent, between green and transparent cells
    for (int x = 60; x < 130; ++x) EXPECT_PIXEL(at(x, 50), Pixel{0, 0, 0, 255});

    drawText(glow + R"("text": "A")");
    EXPECT_PIXEL(at(90, 50), Pixel{255, 0, 255, 255}); // red glyph and full halo
    for (int x = 79; x >= 68; --x) {                   // falls off to nothing at 12 pixels, alike on both sides
        const Pixel left = at(x, 50);
        EXPECT_TRUE(isNear(left, at(179 - x, 50), 2)) << x;
        EXPECT_EQ(left[0], 0);
        EXPECT_LE(left[2], at(x + 1, 50)[2]);
    }
    EXPECT_GT(at(79, 50)[2], 150);
    EXPECT_LT(at(68, 50)[2], 12);
    EXPECT_PIXEL(at(67, 50), Pixel{0, 0, 0, 255});

    // Half as large again, from (75, 13) to (105, 73): the halo begins at the letter's new outline, as wide as before.
    std::vector<Pixel> halo;
    for (int x = 67; x < 80; ++x) halo.push_back(at(x, 50));
    clear(0, 0, 0, 1);
    drawText(still(glow + R"("text": "A", "animation": "punch", "punchAmount": 0.5)"), makeFont(), 0.0f);
    for (int i = 0; i < 13; ++i) {
        EXPECT_TRUE(isNear(at(62 + i, 43), halo[i], 12)) << i;
        EXPECT_TRUE(isNear(at(90, i), halo[i], 12)) << i;
    }

    clear(0, 0, 0, 1);
    drawText(glow + R"("text": "A", "outlineGlowIntensity": 0)");
    EXPECT_PIXEL(at(90, 50), Pixel{255, 0, 0, 255});
}

TEST_F(KineticPictures, GlowReachesAsFarAsItsRadius) {
    // Texels of 4 pixels. A tap at distance d from the point weighs (1 - d^2 / reach^2)^2, where the reach is 1.5
    // radii; c is the share of the weights that lies in the cell, from x = 40 on, and the halo c (2 - c).
    const struct {
        const char* radius;
        int nothing;             // at this x and before
        std::array<int, 3> halo; // at 37, 38 and 39
    } cases[] = {{"0.5", 36, {0, 4, 118}}, {"1", 34, {43, 112, 171}}, {"2", 27, {127, 154, 180}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.radius);
        clear(0, 0, 0, 1);
        drawText(std::string(R"("text": "A", "x": 40, "y": 10, "scale": 4, "outlineGlowEnabled": true,
            "outlineGlowColor": [0, 0, 1], "outlineGlowIntensity": 1, "outlineGlowRadius": )") +
                 c.radius);
        for (int i = 0; i < 3; ++i) EXPECT_NEAR(at(37 + i, 50)[2], c.halo[static_cast<size_t>(i)], 2) << 37 + i;
        EXPECT_EQ(at(c.nothing, 50)[2], 0);
    }
}

TEST_F(KineticPictures, HostileTextsAndFontsAreDrawn) {
    const std::string huge = R"({"text": "A \u0001\u00ff\n\nB", "revealMode": "none", "glitchEnabled": true,
        "outlineGlowEnabled": true, )";
    const std::pair<std::string, float> cases[] = {
        {R"({"text": ""})", 0.0f},
        {R"({"text": " \n  \n"})", 1.0f},
        {R"({"revealMode": "none", "text": ")" + std::string(1 << 20, 'A') + "\"}", 1.0f},
        {huge + R"("scale": 3e38, "tracking": -3e38, "outlineGlowRadius": 3e38, "x": 3e38})", 1.0f},
        {huge + R"("scale": 1e18, "glitchJitter": 1e25, "outlineGlowRadius": 1e9})", 1.0f},
        {huge + R"("outlineGlowRadius": 3000})", 1.0f},
        {huge + R"("animation": "scramble", "scrambleDuration": 3e38, "scrambleRate": 3e38})", 3e38f},
        {huge + R"("animation": "explode", "explodeAmount": 3e38, "explodeSpin": 3e38})", 3e38f},
        {huge + R"("animation": "wave", "waveSpeed": 3e38, "glitchRate": 3e38})", 3e38f},
        {huge + R"("animation": "typeon", "punchDecay": 3e38})", -3e38f},
        {huge + R"("x": 0})", NAN},
    };
    ColorFont empty = makeFont(""), beyond = makeFont();
    empty.columns = empty.cellWidth = empty.textureWidth = 0;
    beyond.cellWidth = beyond.cellHeight = 2000000000;
    LogCapture quiet;
    for (const auto& [json, time] : cases) {
        SCOPED_TRACE(json.substr(0, 200));
        for (const ColorFont& font : {makeFont(), empty, beyond, makeFont("  ")}) drawText(json, font, time);
        glFinish();
    }
    EXPECT_TRUE(quiet.text().starts_with("[KTEXT] Text of 1048576 bytes cut to 16384\n"));
    clear(0, 0, 0, 1);
    drawText(R"("text": "A", "x": 40, "y": 30)");
    EXPECT_PIXEL(at(50, 40), Pixel{255, 0, 0, 255});
}

} // namespace
