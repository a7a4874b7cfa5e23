#include "support/allocation_count.h"
#include "support/gl_test.h"
#include "support/log_capture.h"

#include "gpu/shader_pack.h"
#include "text/kinetic_text.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr int kOutputWidth = 200, kOutputHeight = 100; // pixels

// Cells of 10 x 20 texels, four a row, the first character at the picture's upper left.
ColorFont makeFont(const std::string& chars = "ABCDEFG? H", int columns = 4) {
    ColorFont font;
    font.cellWidth = 10;
    font.cellHeight = 20;
    font.columns = columns;
    font.rows = 3;
    font.textureWidth = 40;
    font.textureHeight = 60;
    font.spaceWidth = 5.0f;
    font.chars = chars;
    for (int i = 0; i < columns * font.rows && i < static_cast<int>(chars.size()); ++i) {
        const float column = static_cast<float>(i % columns), row = static_cast<float>(i / columns);
        font.glyphs[static_cast<unsigned char>(chars[i])] = {column / 4, 1 - (row + 1) / 3, (column + 1) / 4, 1 - row / 3,
                                                             chars[i] == ' ' ? font.spaceWidth : 10.0f};
    }
    return font;
}

struct Box {
    double x, y, width, height; // unrotated, in pixels
    double angle, u0, v0, u1, v1, alpha;
};

Box boxAt(const std::vector<float>& vertices, size_t index) {
    const float* topLeft = &vertices[index * 30];
    const float *bottomLeft = topLeft + 5, *bottomRight = topLeft + 10, *topRight = topLeft + 25;
    EXPECT_TRUE(std::equal(topLeft, topLeft + 5, topLeft + 15) && std::equal(bottomRight, bottomRight + 5, topLeft + 20));
    const double right = topRight[0] - topLeft[0], down = topRight[1] - topLeft[1];
    const double width = std::hypot(right, down);
    const double height = std::hypot(bottomLeft[0] - topLeft[0], bottomLeft[1] - topLeft[1]);
    EXPECT_NEAR((bottomLeft[0] - topLeft[0]) / height, -down / width, 1e-3); // a quarter turn on
    EXPECT_NEAR((bottomLeft[1] - topLeft[1]) / height, right / width, 1e-3);
    const double centerX = (topLeft[0] + bottomRight[0]) / 2.0, centerY = (topLeft[1] + bottomRight[1]) / 2.0;
    return {centerX - width / 2, centerY - height / 2, width, height, std::atan2(down, right),
            topLeft[2], bottomLeft[3], bottomRight[2], topLeft[3], topLeft[4]};
}

// Parameters in which nothing moves but what a case sets: scale 2, tracking -1, left at (100, 50).
std::string still(const std::string& rest) {
    const char* const kDefaults[][2] = {
        {"animation", R"("still")"}, {"revealMode", R"("none")"}, {"scale", "2"}, {"tracking", "-1"},
        {"lineSpacing", "1.5"}, {"align", R"("left")"}, {"x", "0.5"}, {"y", "0.5"}};
    std::string json = "{" + rest;
    for (const auto& [key, value] : kDefaults) json += std::string(", \"") + key + "\": " + value; // the first of a key counts
    return json + "}";
}

class Built {
public:
    explicit Built(const std::string& json, ColorFont with = makeFont())
        : font(std::move(with)), params(parseKineticTextParams(parseJson(json))), layout(layoutKineticText(params, font)) {
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
    const auto cut = [](uint64_t value) { return value & 0xffffffffu; };
    n = cut(n);
    n = cut((n ^ (n >> 16)) * 0x7feb352d);
    n = cut((n ^ (n >> 15)) * 0x846ca68b);
    return static_cast<double>(n ^ (n >> 16)) * 2.3283064e-10;
}

double both(uint64_t n) {
    return 2 * lot(n) - 1;
}

double sign(uint64_t n) {
    return lot(n) < 0.5 ? -1 : 1;
}

TEST(KineticParams, ReadAndClampedKeyByKey) {
    using P = KineticTextParams;
    const struct {
        const char* json;
        float P::*field;
        float wanted;
    } cases[] = {
        {"[]", &P::scale, 2.75f},
        {R"({"scale": 0})", &P::scale, 0.01f},
        {R"({"scale": "3"})", &P::scale, 2.75f},
        {R"({"scale": 1e999})", &P::scale, 2.75f},
        {R"({"lineSpacing": -1})", &P::lineSpacing, 0.1f},
        {R"({"writeSpeed": 0})", &P::writeSpeed, 0.01f},
        {R"({"scrambleRate": 0})", &P::scrambleRate, 1.0f},
        {R"({"glitchRate": 0})", &P::glitchRate, 0.1f},
        {R"({"alpha": 7})", &P::alpha, 1.0f},
        {R"({"stagger": -3})", &P::stagger, 0.0f},
        {R"({"position": [3, 4]})", &P::positionY, 4.0f},
        {R"({"position": [3, 4], "positionY": 5, "y": null})", &P::positionY, 5.0f},
        {R"({"position": [3, 4], "positionX": 5, "x": 6})", &P::positionX, 6.0f},
        {R"({"position": ["3"]})", &P::positionX, 0.5f},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(parseKineticTextParams(parseJson(c.json)).*c.field, c.wanted) << c.json;
    }
    const auto color = [](const char* json) { return parseKineticTextParams(parseJson(json)).glowColor; };
    EXPECT_EQ(color(R"({"outlineGlowColor": [1, "red", 0.5, 2]})"), (std::array{1.0f, 0.95f, 0.5f}));
    EXPECT_EQ(color(R"({"outlineGlowColor": [1, 1]})"), (std::array{0.2f, 0.95f, 1.0f}));

    JsonValue params = parseJson(R"({"text": ""})");
    EXPECT_EQ(parseKineticTextParams(params).text, "WE ARE THE SIGNAL");
    params.members[0].second.text = "a\\\\n\\t\\";
    EXPECT_EQ(parseKineticTextParams(params).text, "a\\\n\\t\\");
    params.members[0].second.text.assign(1 << 20, 'x');
    LogCapture log;
    EXPECT_EQ(parseKineticTextParams(params).text.size(), kKineticMaxBytes);
    EXPECT_EQ(log.text(), "[KTEXT] Text of 1048576 bytes cut to 16384\n");
}

TEST(KineticGeometry, LinesStandByTheirWidths) {
    const struct {
        const char* what;
        std::string json;
        std::vector<std::pair<double, double>> wanted; // top left corners
    } cases[] = {
        {"left, a space takes no quad", R"("text": "AB C")", {{100, 50}, {119, 50}, {147, 50}}},
        {"right, by the width without the last tracking", R"("text": "AB C", "align": "right")", {{33, 50}, {52, 50}, {80, 50}}},
        {"centre, each line by itself", R"("text": "AB\\n\\nC", "align": "center")", {{80.5, 50}, {99.5, 50}, {90, 170}}},
        {"a missing character counts in no width", R"("text": "AzB", "align": "right")", {{61, 50}, {80, 50}, {99, 50}}},
        {"nor does one alone take tracking off", R"("text": "z", "align": "right", "tracking": 30)", {{100, 50}}},
        {"a width is never negative", R"("text": "AA", "align": "right", "tracking": -50)", {{100, 50}, {70, 50}}},
        {"beyond 0 to 1 are pixels", R"("text": "A", "x": 1.5, "y": -20)", {{1.5, -20}}},
        {"0 and 1 are the edges", R"("text": "A", "x": 1, "y": 0)", {{200, 0}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        const Built text = Built(still(c.json)).at(1.0f);
        ASSERT_EQ(text.count(), c.wanted.size());
        for (size_t i = 0; i < c.wanted.size(); ++i) {
            EXPECT_NEAR(text.box(i).x, c.wanted[i].first, 1e-4);
            EXPECT_NEAR(text.box(i).y, c.wanted[i].second, 1e-4);
            EXPECT_NEAR(text.box(i).width, 20.0, 1e-4);
            EXPECT_NEAR(text.box(i).height, 40.0, 1e-4);
        }
    }
    const Box f = Built(still(R"("text": "F")")).at(0).box(0); // the second cell of the second row
    EXPECT_NEAR(f.u0, 0.25, 1e-6);
    EXPECT_NEAR(f.u1, 0.5, 1e-6);
    EXPECT_NEAR(f.v0, 1 / 3.0, 1e-6);
    EXPECT_NEAR(f.v1, 2 / 3.0, 1e-6);
}

TEST(KineticGeometry, MissingGlyphsHaveStandIns) {
    const Built first = Built(still(R"("text": "zC")"), makeFont("BC")).at(0); // no '?'
    EXPECT_EQ(first.box(0).u1, 0.25);
    EXPECT_NEAR(first.box(1).x, 119, 1e-4);
    const Built nothing = Built(still(R"("text": "z C")"), makeFont("")).at(0);
    EXPECT_EQ(nothing.box(1).u1 + nothing.box(1).v1, 0);
    EXPECT_NEAR(nothing.box(1).x, 109, 1e-4); // spaces alone advance
}

TEST(KineticGeometry, RevealsOverTime) {
    const struct {
        const char* json;
        float time;
        size_t wanted;
        double lastAlpha;
    } cases[] = {
        {R"("text": "AB CD", "revealMode": "character", "writeSpeed": 10)", 0.0f, 1, 0.15},
        {R"("text": "AB CD", "revealMode": "character", "writeSpeed": 10)", 0.25f, 3, 0.5},
        {R"("text": "AB CD", "revealMode": "any", "writeSpeed": 10)", 9.0f, 4, 1},
        {R"("text": "AB CD", "revealMode": "none")", 0.0f, 4, 1},
        {R"("text": "AB CD", "revealMode": "none", "animation": "typeon", "writeSpeed": 10)", 0.15f, 2, 0.5},
        // A space between words and a line's last character end a word; leading spaces do not, two end two.
        {R"("text": "AB CD", "revealMode": "word", "writeSpeed": 1)", 0.5f, 2, 0.5},
        {R"("text": "AB CD", "revealMode": "word", "writeSpeed": 1)", 1.5f, 4, 0.5},
        {R"("text": "AB\nCD", "revealMode": "word", "writeSpeed": 1)", 1.5f, 4, 0.5},
        {R"("text": " A  B", "revealMode": "word", "writeSpeed": 1)", 1.5f, 1, 1},
        {R"("text": " A  B", "revealMode": "word", "writeSpeed": 1)", 2.5f, 2, 0.5},
        {R"("text": "A \n B", "revealMode": "word", "writeSpeed": 1)", 1.5f, 2, 0.5},
        {R"("text": "ABC", "revealMode": "character", "animation": "scramble", "writeSpeed": 10)", 0.15f, 2, 0.65},
        {R"("text": "ABC", "revealMode": "none", "animation": "scramble")", 0.0f, 3, 1},
        {R"("text": "ABC", "revealMode": "character", "writeSpeed": 1e30)", 1e30f, 3, 1},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.json << " at " << c.time);
        const Built text = Built(still(c.json)).at(c.time);
        ASSERT_EQ(text.count(), c.wanted);
        EXPECT_NEAR(text.box(c.wanted - 1).alpha, c.lastAlpha, 1e-5);
    }
}

TEST(KineticGeometry, AnimationsFollowTheirFormulas) {
    const float t = 0.7f;
    const Box wave = Built(still(R"("text": "AB\nCD", "animation": "wave", "waveAmount": 8, "waveSpeed": 3)")).at(t).box(2);
    EXPECT_NEAR(wave.y, 50 + 60 + std::sin(0.7 * 3 + 2 * 0.65) * 8, 1e-4);

    const Built punched = Built(still(R"("text": "ABC", "animation": "punch", "punchAmount": 0.5, "punchDecay": 2, "stagger": 0.2)")).at(t);
    const double punch = std::exp(-(0.7 - 2 * 0.2) * 2) * 0.5;
    EXPECT_NEAR(punched.box(2).width, 20 * (1 + punch), 1e-4);
    EXPECT_NEAR(punched.box(2).x, 138 - 10 * punch, 1e-4);
    EXPECT_NEAR(punched.box(2).y, 50 - punch * 40 * 0.35 - 20 * punch, 1e-4);

    const Built burst = Built(still(R"("text": "ABCDEFGH A B", "animation": "explode", "explodeAmount": 90, "explodeSpeed": 1.5,
        "explodeSpin": 0.3, "explodeFade": 0.6, "stagger": 0.05)")).at(t);
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
    Built text(still(R"("text": "ABCz AB", "animation": "scramble", "revealMode": "character", "writeSpeed": 10,
        "scrambleDuration": 0.5, "scrambleRate": 20)"), makeFont(font, 3));
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
    bool strong = false;
};

Glitched glitched(const std::string& style, uint64_t c, uint64_t word, uint64_t step, double amount) {
    const double g = std::min(amount, 3.0), jitter = 4, flicker = 0.5;
    const uint64_t s = c * 0x16a95 + step * 0x4eb + word * 0x10d35, b = c / 6 * 0x4c7 + step * 0x32b + word * 0x61;
    Glitched r;
    if (style == "vhs") {
        if (lot(b + 5) > std::clamp(g * 0.18 + 0.24, 0.1, 0.82)) return r;
        const double amp = jitter * std::max(g * 1.35, 0.8), side = sign(b + 0x11);
        r = {(lot(s + 0x13) * 1.6 + 0.5) * side * amp, both(s + 0x1f) * amp * 0.08, side * std::min(g * 0.45 + 0.9, 2.4),
             both(b + 0x1d) * std::min(g * 0.08 + 0.08, 0.45),
             1 - lot(s + 0x47) * std::clamp((g * 0.35 + 0.45) * flicker, 0.0, 0.7), lot(b + 0x2b) > 0.93 - g * 0.05};
        if (r.strong) r = {r.x + side * amp * 1.9, r.y, r.u * 1.75, r.v, r.alpha * 0.86, true};
        r.alpha = std::clamp(r.alpha, 0.3, 1.0);
    } else if (style == "corrupt") {
        if (lot(s + 7) > std::clamp(g * 0.24 + 0.32, 0.14, 0.96)) return r;
        const double amp = jitter * std::max(g * 1.7, 1.1);
        r = {both(s + 0x11) * amp * 1.25, both(s + 0x1f) * amp * 0.65, both(s + 0x2f) * std::min(g * 0.7 + 1.1, 3.2),
             both(s + 0x3b) * std::min(g * 0.35 + 0.45, 1.7),
             1 - lot(s + 0x47) * std::clamp((g * 0.45 + 0.85) * flicker, 0.0, 0.98), lot(s + 0x71) > 0.83 - g * 0.08};
        if (r.strong) {
            r = {r.x + sign(s + 0x7f) * amp * 2.4, r.y + both(s + 0x83) * amp * 0.9, r.u, r.v * 1.6, r.alpha * 0.62, true};
        }
        r.alpha = std::clamp(r.alpha, 0.12, 1.0);
    } else {
        if (lot(s + 0xb) > std::clamp(g * 0.22 + 0.18, 0.08, 0.9)) return r;
        const double amp = g * jitter;
        r = {both(s + 0x11) * amp, both(s + 0x1f) * amp * 0.25, both(s + 0x2f) * std::min(g * 0.25 + 0.35, 1.35),
             both(s + 0x3b) * std::min(g * 0.15 + 0.2, 0.85), 1 - lot(s + 0x47) * std::clamp(g * flicker * 0.85, 0.0, 0.9),
             lot(s + 0x61) > 0.89 - g * 0.08};
        if (r.strong) r = {r.x + sign(s + 0x65) * amp * 1.5, r.y, r.u, r.v, r.alpha * 0.8, true};
        r.alpha = std::clamp(r.alpha, 0.18, 1.0);
    }
    return r;
}

TEST(KineticGeometry, GlitchStylesFollowTheirFormulas) {
    for (const std::string style : {"digital", "vhs", "corrupt", "another"}) {
        for (const double amount : {0.3, 1.0, 10.0}) {
            SCOPED_TRACE(testing::Message() << style << " " << amount);
            Built text(still(R"("text": "AAAAAAAAAAAAAAAAAAAA AAAA", "glitchEnabled": true, "glitchJitter": 4, "glitchFlicker": 0.5,
                "glitchRate": 10, "glitchStyle": ")" + style + "\", \"glitchAmount\": " + std::to_string(amount)));
            int misses = 0, strong = 0;
            for (int step = 0; step < 20; ++step) {
                text.at((static_cast<float>(step) + 0.5f) / 10.0f);
                for (uint64_t c = 0; c < 24; ++c) {
                    const Glitched wanted = glitched(style, c, c < 20 ? 0 : 1, static_cast<uint64_t>(step), amount);
                    const Box box = text.box(c);
                    EXPECT_NEAR(box.x, 100 + static_cast<double>(c) * 19 + (c < 20 ? 0 : 9) + wanted.x, 1e-3);
                    EXPECT_NEAR(box.y, 50 + wanted.y, 1e-3);
                    EXPECT_NEAR(box.u0 * 40, wanted.u, 1e-4);
                    EXPECT_NEAR((box.v1 - 1) * 60, wanted.v, 1e-4);
                    EXPECT_NEAR(box.alpha, wanted.alpha, 1e-5);
                    misses += wanted.x == 0;
                    strong += wanted.strong;
                }
            }
            EXPECT_GT(misses, 0);
            EXPECT_GT(strong, 0);
        }
    }
}

TEST(KineticGeometry, SteadyFramesTakeNoMemoryAndEqualTimesGiveEqualBytes) {
    Built text(still(R"("text": "ABCD EFGH", "animation": "explode", "outlineGlowEnabled": true, "outlineGlowRadius": 2,
        "revealMode": "character", "writeSpeed": 10, "glitchEnabled": true)"));
    const long before = allocationCount();
    for (int i = 0; i < 40; ++i) text.at(static_cast<float>(i) * 0.03f);
    EXPECT_EQ(allocationCount() - before, 0);

    const std::vector<float> glyphs = text.at(0.6f).geometry.glyphs, glow = text.geometry.glow;
    text.at(0.1f).at(0.6f);
    EXPECT_EQ(text.geometry.glyphs, glyphs);
    EXPECT_EQ(text.geometry.glow, glow);
    ASSERT_EQ(glow.size(), glyphs.size());
    const Box glyph = boxAt(glyphs, 5), halo = boxAt(glow, 5); // grown by 2 texels x scale 2 x 1.5 on each side
    EXPECT_NEAR(halo.width, glyph.width + 12, 1e-3);
    EXPECT_NEAR(halo.height, glyph.height + 12, 1e-3);
    EXPECT_NEAR(halo.x, glyph.x - 6, 1e-3);
    EXPECT_NEAR(halo.angle, glyph.angle, 1e-4);
    EXPECT_EQ(halo.u1, glyph.u1);
    EXPECT_EQ(halo.alpha, glyph.alpha);
}

// The shipped shaders and an atlas of solid cells: A is red, B green, every other one transparent.
class KineticPictures : public GlTest {
protected:
    static GLuint program() {
        static const GLuint instance = [] {
            const std::string stem = GALLERY_PATH "/DemoSceneResources/assets/shaders/kinetictext/KineticText";
            return linkProgram(readTextFile(stem + ".vert"), readTextFile(stem + ".frag"), "kinetictext");
        }();
        return instance;
    }

    static GLuint makeAtlas() {
        std::vector<unsigned char> texels(40 * 60 * 4, 0);
        for (int y = 40; y < 60; ++y) { // the picture's upper rows
            for (int x = 0; x < 20; ++x) {
                unsigned char* texel = &texels[static_cast<size_t>(y * 40 + x) * 4];
                texel[x < 10 ? 0 : 1] = texel[3] = 255;
            }
        }
        GLuint texture = 0;
        glGenTextures(1, &texture);
        glBindTexture(GL_TEXTURE_2D, texture);
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, 40, 60, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, GL_NEAREST);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
        return texture;
    }

    void SetUp() override {
        GlTest::SetUp();
        ASSERT_TRUE(ensureTarget(target, kOutputWidth, kOutputHeight));
        bindTarget(target);
        glViewport(0, 0, kOutputWidth, kOutputHeight);
        clear(0, 0, 0, 1);
    }
    void TearDown() override {
        deleteTarget(target);
        GlTest::TearDown();
    }

    void drawText(const JsonValue& params, ColorFont font, float time) {
        static const GLuint atlas = makeAtlas();
        font.texture = atlas;
        KineticText text;
        createKineticText(text, params, std::move(font), program());
        drawKineticText(text, program(), time, kOutputWidth, kOutputHeight);
        releaseKineticText(text);
    }
    void drawText(const std::string& rest, float time = 1.0f) { drawText(parseJson(still(rest)), makeFont(), time); }

    // From the top left.
    static Pixel at(int x, int y) { return pixel(x, kOutputHeight - 1 - y); }

    RenderTarget target;
};

TEST_F(KineticPictures, GlyphsCoverTheirCells) {
    glDisable(GL_BLEND);
    clear(0, 0, 1, 1);
    drawText(R"("text": "AB", "x": 40, "y": 30, "alpha": 0.6, "tracking": 0)");
    EXPECT_PIXEL(at(40, 30), Pixel{153, 0, 255, 255}); // additive
    EXPECT_PIXEL(at(59, 69), Pixel{153, 0, 255, 255});
    EXPECT_PIXEL(at(60, 30), Pixel{0, 153, 255, 255});
    EXPECT_PIXEL(at(39, 30), Pixel{0, 0, 255, 255});
    EXPECT_PIXEL(at(40, 29), Pixel{0, 0, 255, 255});
    EXPECT_PIXEL(at(40, 70), Pixel{0, 0, 255, 255});
    drawText(R"("text": "A", "x": 100, "y": 30, "alpha": 0.6, "blendMode": "normal")");
    EXPECT_PIXEL(at(110, 40), Pixel{153, 0, 102, 193}); // 0.6 over blue
}

TEST_F(KineticPictures, GlowSurroundsItsGlyphAlone) {
    const std::string glow = R"("x": 80, "y": 30, "outlineGlowEnabled": true, "outlineGlowRadius": 4, "outlineGlowColor": [0, 0, 1])";
    drawText(glow + R"(, "text": "C")"); // transparent, between green and transparent cells
    for (int x = 60; x < 130; ++x) EXPECT_PIXEL(at(x, 50), Pixel{0, 0, 0, 255});

    drawText(glow + R"(, "text": "A")");
    EXPECT_PIXEL(at(90, 50), Pixel{255, 0, 255, 255}); // red glyph and full halo
    int last = 256;
    for (int x = 79; x >= 68; --x) { // falls off to nothing at 12 pixels, alike on both sides
        const Pixel left = at(x, 50), right = at(179 - x, 50);
        EXPECT_TRUE(isNear(left, right, 2)) << x;
        EXPECT_EQ(left[0], 0);
        EXPECT_LE(left[2], last);
        last = left[2];
    }
    EXPECT_GT(at(79, 50)[2], 150);
    EXPECT_LT(at(68, 50)[2], 12);
    EXPECT_PIXEL(at(67, 50), Pixel{0, 0, 0, 255});

    clear(0, 0, 0, 1);
    drawText(glow + R"(, "text": "A", "outlineGlowIntensity": 0)");
    EXPECT_PIXEL(at(90, 50), Pixel{255, 0, 0, 255});
}

TEST_F(KineticPictures, HostileTextsAndFontsAreDrawn) {
    JsonValue longText = parseJson(R"({"text": "", "revealMode": "none"})");
    longText.members[0].second.text.assign(1 << 20, 'A');
    const std::string huge = R"({"text": "A \u0001\u00ff\n\nB", "revealMode": "none", "glitchEnabled": true, "outlineGlowEnabled": true)";
    const struct {
        const char* what;
        JsonValue params;
        float time;
    } cases[] = {
        {"empty", parseJson(R"({"text": ""})"), 0.0f},
        {"spaces and line breaks", parseJson(R"({"text": " \n  \n"})"), 1.0f},
        {"long", longText, 1.0f},
        {"huge numbers", parseJson(huge + R"(, "scale": 3e38, "tracking": -3e38, "outlineGlowRadius": 3e38, "x": 3e38})"), 1.0f},
        {"large numbers", parseJson(huge + R"(, "scale": 1e18, "glitchJitter": 1e25, "outlineGlowRadius": 1e9})"), 1.0f},
        {"a wide halo", parseJson(huge + R"(, "outlineGlowRadius": 3000})"), 1.0f},
        {"late scramble", parseJson(huge + R"(, "animation": "scramble", "scrambleDuration": 3e38, "scrambleRate": 3e38})"), 3e38f},
        {"explosion", parseJson(huge + R"(, "animation": "explode", "explodeAmount": 3e38, "explodeSpin": 3e38})"), 3e38f},
        {"wave", parseJson(huge + R"(, "animation": "wave", "waveSpeed": 3e38, "glitchRate": 3e38})"), 3e38f},
        {"before the start", parseJson(huge + R"(, "animation": "typeon", "punchDecay": 3e38})"), -3e38f},
        {"no time at all", parseJson(huge + "}"), std::nanf("")},
    };
    ColorFont empty = makeFont("");
    empty.columns = empty.cellWidth = empty.textureWidth = 0;
    ColorFont beyond = makeFont();
    beyond.cellWidth = beyond.cellHeight = 2000000000;
    LogCapture quiet;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        for (const ColorFont& font : {makeFont(), empty, beyond, makeFont("  ", 4)}) drawText(c.params, font, c.time);
        glFinish();
    }
    clear(0, 0, 0, 1);
    drawText(R"("text": "A", "x": 40, "y": 30)");
    EXPECT_PIXEL(at(50, 40), Pixel{255, 0, 0, 255});
}

} // namespace
