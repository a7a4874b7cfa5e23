#include "support/allocation_count.h"
#include "support/log_capture.h"
#include "support/picture_test.h"

#include "foundation/json.h"
#include "gpu/uniforms.h"
#include "text/shape_text.h"

namespace {

// All but the lower left quarter of a box twice as wide as high.
constexpr const char* kFlag = "<svg viewBox=\"0 0 200 100\"><path d=\"M0 0H200V100H100V50H0Z\"/></svg>";

class ShapeTextTest : public PictureTest {
protected:
    ShapeTextTest() : PictureTest("Text/ShapeText", 160, 80) { show.write("flag.svg", kFlag); }

    ShapeText create(const std::string& members) {
        ShapeText shape;
        const std::string json = "{" + members + R"(, "svgPath": "flag.svg", "glow": 0, "rasterWidth": 256})";
        EXPECT_TRUE(
            createShapeText(device.textures, shape, parseShapeTextParams(parseJson(json)), show.baseDir, program));
        return shape;
    }

    void draw(const ShapeText& shape, float time = 0.0f) {
        drawShapeText(device, shape, program, values, drawAt(time));
    }

    // At a point in shares of the output, from its top left.
    Pixel at(float x, float y) const { return PictureTest::at(x * 160, y * 80); }
    bool isLit(float x, float y) const { return at(x, y)[1] > 100; }

    LogCapture log;
};

TEST_F(ShapeTextTest, ParametersAreClampedAndForgiving) {
    const ShapeTextParams plain = parseShapeTextParams(parseJson("[1]"));
    EXPECT_EQ(plain.svgPath, "assets/logos/demo_shape_text.svg");
    const ShapeTextParams odd = parseShapeTextParams(parseJson(
        R"({"width": 0, "height": -1, "alpha": 7, "glow": -1, "rasterWidth": 20, "rasterHeight": 1e12, "x": "1",
            "y": 1e999, "animation": "wave", "blendMode": "Additive", "fillColor": [0.5, "x", 0.25],
            "glowColor": 3})"));
    EXPECT_FLOAT_EQ(odd.width, 0.001f);
    EXPECT_TRUE(odd.height == 0.0f && odd.glow == 0.0f && odd.alpha == 1.0f);
    EXPECT_TRUE(odd.rasterWidth == 64 && odd.rasterHeight == 4096);
    EXPECT_TRUE(odd.x == plain.x && odd.y == plain.y);
    EXPECT_EQ(odd.animation, ShapeAnimation::still);
    EXPECT_EQ(odd.blendMode, BlendMode::alpha);
    EXPECT_EQ(odd.fillColor, (std::array<float, 4>{0.5f, 1.0f, 0.25f, 1.0f}));
    EXPECT_EQ(odd.glowColor, plain.glowColor);
}

TEST_F(ShapeTextTest, LogosLieWhereTheyAreTold) {
    const std::string half = R"("x": 0.5, "y": 0.5, "width": 0.5, "height": 0.5)";
    const struct {
        std::string members;
        float time;
        std::vector<std::array<float, 2>> lit, dark; // x, y
    } cases[] = {
        {half, 0, {{0.3f, 0.3f}, {0.7f, 0.7f}}, {{0.3f, 0.7f}, {0.2f, 0.4f}}},
        {half + R"(, "anchor": "right")", 0, {{0.1f, 0.6f}, {0.4f, 0.9f}}, {{0.1f, 0.9f}, {0.1f, 0.4f}}},
        {half + R"(, "anchor": "top")", 0, {{0.6f, 0.6f}, {0.9f, 0.9f}}, {{0.6f, 0.9f}, {0.4f, 0.6f}}},
        {half + R"(, "rotation": 180)", 0, {{0.3f, 0.3f}, {0.7f, 0.7f}}, {{0.7f, 0.3f}}},
        // 40 x 20 pixels, stood on end: the missing quarter comes to lie at the lower right.
        {R"("x": 0.5, "y": 0.5, "width": 0.25, "rotation": 90)",
         0,
         {{0.47f, 0.37f}, {0.53f, 0.37f}, {0.47f, 0.62f}},
         {{0.53f, 0.62f}, {0.6f, 0.5f}}},
        {half + R"(, "animation": "reveal")", 0, {}, {{0.3f, 0.3f}, {0.7f, 0.7f}}},
        {half + R"(, "animation": "reveal", "revealSpeed": 0.5)", 1, {{0.3f, 0.3f}}, {{0.7f, 0.7f}}},
        {half + R"(, "animation": "reveal", "revealSpeed": 0.5)", 3, {{0.3f, 0.3f}, {0.7f, 0.7f}}, {}},
        {half + R"(, "pulseAmount": 0.6, "pulseSpeed": 0.5235988)", 3, {{0.2f, 0.2f}, {0.8f, 0.8f}}, {}},
        {R"("alpha": 0, "width": 1, "height": 1)", 0, {}, {{0.5f, 0.45f}}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.members);
        clear(0, 0, 0, 1);
        draw(create(c.members), c.time);
        for (const auto& p : c.lit) EXPECT_TRUE(isLit(p[0], p[1])) << p[0] << ", " << p[1];
        for (const auto& p : c.dark) EXPECT_FALSE(isLit(p[0], p[1])) << p[0] << ", " << p[1];
    }
}

TEST_F(ShapeTextTest, BlendsAsItSaysAndGlowsBeyondItsEdge) {
    const std::string place = R"("x": 0.5, "y": 0.5, "width": 0.6, "height": 0.6, "edge": 0, "animation": "",
        "fillColor": [0, 0, 1])";
    clear(1, 0, 0, 1);
    draw(create(place));
    EXPECT_GT(at(0.6f, 0.35f)[0], 250);
    draw(create(place + R"(, "blendMode": "alpha")"));
    EXPECT_LT(at(0.6f, 0.35f)[0], 100);
    EXPECT_EQ(at(0.3f, 0.7f)[2], 0); // no glow, so nothing outside
    clear(0, 0, 0, 1);
    draw(create(place + R"(, "glow": 2)"));
    EXPECT_GT(at(0.46f, 0.56f)[2], 40);
    EXPECT_GT(at(0.5f, 0.17f)[2], 30);
    EXPECT_EQ(at(0.01f, 0.5f)[2], 0);

    const ShapeText shape = create(place);
    draw(shape);
    const long before = allocationCount();
    for (int frame = 1; frame < 20; ++frame) draw(shape, static_cast<float>(frame) * 0.02f);
    EXPECT_EQ(allocationCount(), before);
}

TEST_F(ShapeTextTest, MasksAndPicturesOfOneFileAreKeptApart) {
    const ShapeText shape = create(R"("x": 0)"), same = create(R"("x": 1)");
    const ShapeText larger = create(R"("rasterWidth": 512)");
    EXPECT_EQ(shape.logo.mask.texture, same.logo.mask.texture);
    EXPECT_NE(shape.logo.mask.texture, larger.logo.mask.texture);
    EXPECT_EQ(larger.logo.mask.height, 256);
    const TextureInfo picture = loadPicture(device.textures, show.path("flag.svg"));
    EXPECT_TRUE(log.text().ends_with("  [TEX] " + show.path("flag.svg") + " (1024x512)\n")) << log.text();

    // Pictures are drawn bottom row first, masks top row first.
    Program quad = linkProgram(kQuadVertexSource, kQuadFragmentSource, "image");
    gl.UseProgram(quad.handle);
    setUniformVec2(standardUniform(quad.uniforms, StandardUniform::uUvScale), 1, 1);
    setUniformFloat(standardUniform(quad.uniforms, StandardUniform::uAlpha), 1);
    bindChannel(quad.uniforms, 0, picture.texture);
    drawQuad(device.quad);
    EXPECT_TRUE(isLit(0.2f, 0.2f) && isLit(0.8f, 0.2f) && isLit(0.8f, 0.8f));
    EXPECT_FALSE(isLit(0.2f, 0.8f));
    deleteProgram(quad);

    show.write("tall.SVG", "<path d=\"M0 0H10V40H0Z\">");
    const TextureInfo tall = loadPicture(device.textures, show.path("tall.SVG"));
    EXPECT_TRUE(tall.width == 256 && tall.height == 1024) << tall.width << " x " << tall.height;
}

TEST_F(ShapeTextTest, FailuresAreSaidAndNotRemembered) {
    ShapeText shape;
    const ShapeTextParams params = {.svgPath = "late.svg"};
    EXPECT_FALSE(createShapeText(device.textures, shape, params, show.baseDir, program));
    draw(shape); // draws nothing
    const std::string path = show.write("late.svg", "<svg/>");
    EXPECT_EQ(loadPicture(device.textures, path).texture, 0u);
    EXPECT_EQ(log.text(), "[SHAPETEXT] SVG not found: late.svg\n[SHAPETEXT] SVG has no supported paths: " + path +
                              "\n  [WARN] Texture load failed: " + path + "\n");
    show.write("late.svg", kFlag);
    EXPECT_NE(loadPicture(device.textures, path).texture, 0u);
    EXPECT_TRUE(createShapeText(device.textures, shape, params, show.baseDir, program));
}

} // namespace
