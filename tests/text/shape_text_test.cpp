#include "support/allocation_count.h"
#include "support/gl_test.h"
#include "support/log_capture.h"
#include "support/temp_show.h"

#include "gpu/render_target.h"
#include "gpu/shader_pack.h"
#include "gpu/uniforms.h"
#include "text/shape_text.h"

namespace {

// All but the lower left quarter of a box twice as wide as high.
constexpr const char* kFlag = "<svg viewBox=\"0 0 200 100\"><path d=\"M0 0H200V100H100V50H0Z\"/></svg>";

class ShapeTextTest : public GlTest {
protected:
    static constexpr int kOutputWidth = 160; // pixels
    static constexpr int kOutputHeight = 80;

    void SetUp() override {
        GlTest::SetUp();
        const std::string folder = GALLERY_PATH "/DemoSceneResources/assets/shaders/Text/ShapeText";
        program = linkProgram(readTextFile(folder + ".vert"), readTextFile(folder + ".frag"), "shapetext");
        ASSERT_NE(program, 0u);
        show.write("flag.svg", kFlag);
        target = createRenderTarget(kOutputWidth, kOutputHeight);
        bindTarget(target);
        clear(0, 0, 0, 1);
    }

    void TearDown() override {
        deleteTarget(target);
        deleteProgram(program);
        deleteTextures();
        GlTest::TearDown();
    }

    ShapeText create(const std::string& members) {
        ShapeText shape;
        const std::string json = "{" + members + R"(, "svgPath": "flag.svg", "glow": 0, "rasterWidth": 256})";
        EXPECT_TRUE(createShapeText(shape, parseJson(json), show.baseDir, program));
        return shape;
    }

    void draw(const ShapeText& shape, float time = 0.0f) {
        drawShapeText(shape, program, time, kOutputWidth, kOutputHeight);
    }

    // At a point in shares of the output, from its top left.
    static Pixel at(float x, float y) {
        return pixel(static_cast<int>(x * kOutputWidth), kOutputHeight - 1 - static_cast<int>(y * kOutputHeight));
    }
    static bool isLit(float x, float y) { return at(x, y)[1] > 100; }

    LogCapture log;
    TempShow show;
    RenderTarget target;
    GLuint program = 0;
};

TEST_F(ShapeTextTest, ParametersAreClampedAndForgiving) {
    const ShapeTextParams plain = parseShapeTextParams(parseJson("[1]"));
    EXPECT_EQ(plain.svgPath, "assets/logos/demo_shape_text.svg");
    const ShapeTextParams low = parseShapeTextParams(parseJson(
        R"({"width": 0, "height": -1, "alpha": -2, "glow": -1, "pulseAmount": -1, "rasterWidth": 20, "rasterHeight": 1e12,
            "anchor": "middle", "animation": "wave", "blendMode": "Additive", "fillColor": [0.5, "x", 0.25], "x": "1"})"));
    EXPECT_FLOAT_EQ(low.width, 0.001f);
    EXPECT_EQ(low.height, 0.0f);
    EXPECT_EQ(low.alpha, 0.0f);
    EXPECT_EQ(low.glow, 0.0f);
    EXPECT_EQ(low.pulseAmount, 0.0f);
    EXPECT_EQ(low.rasterWidth, 64);
    EXPECT_EQ(low.rasterHeight, 4096);
    EXPECT_EQ(low.anchor, ShapeAnchor::left);
    EXPECT_EQ(low.animation, ShapeAnimation::still);
    EXPECT_EQ(low.blendMode, BlendMode::alpha);
    EXPECT_EQ(low.fillColor, (std::array<float, 4>{0.5f, 1.0f, 0.25f, 1.0f}));
    EXPECT_EQ(low.x, 0.5f);
    const ShapeTextParams odd = parseShapeTextParams(
        parseJson(R"({"alpha": 1.5, "width": 1e999, "rasterWidth": null, "fillColor": 3})"));
    EXPECT_EQ(odd.alpha, 1.0f);
    EXPECT_EQ(odd.width, plain.width);
    EXPECT_EQ(odd.rasterWidth, 1024);
    EXPECT_EQ(odd.fillColor, plain.fillColor);
}

TEST_F(ShapeTextTest, LogosLieWhereTheyAreTold) {
    const std::string half = R"("x": 0.5, "y": 0.5, "width": 0.5, "height": 0.5)";
    const struct {
        std::string members;
        float time;
        std::vector<std::array<float, 2>> lit, dark; // x, y
    } cases[] = {
        {half, 0, {{0.3f, 0.3f}, {0.7f, 0.7f}}, {{0.3f, 0.7f}, {0.2f, 0.4f}}},
        {R"("x": 1, "y": 0, "width": 0.5, "height": 0.5, "anchor": "right")", 0, {{0.6f, 0.1f}, {0.9f, 0.4f}},
         {{0.6f, 0.4f}, {0.4f, 0.2f}}},
        {R"("x": 0, "y": 0.5, "width": 0.5, "height": 0.5, "anchor": "top")", 0, {{0.1f, 0.6f}, {0.4f, 0.9f}},
         {{0.1f, 0.9f}, {0.1f, 0.4f}}},
        {half + R"(, "rotation": 180)", 0, {{0.3f, 0.3f}, {0.7f, 0.7f}}, {{0.7f, 0.3f}}},
        // 40 x 20 pixels, stood on end: the missing quarter comes to lie at the lower right.
        {R"("x": 0.5, "y": 0.5, "width": 0.25, "rotation": 90)", 0, {{0.47f, 0.37f}, {0.53f, 0.37f}, {0.47f, 0.62f}},
         {{0.53f, 0.62f}, {0.6f, 0.5f}}},
        {half + R"(, "animation": "reveal")", 0, {}, {{0.3f, 0.3f}, {0.7f, 0.7f}}},
        {half + R"(, "animation": "reveal", "revealSpeed": 0.5)", 1, {{0.3f, 0.3f}}, {{0.7f, 0.7f}}},
        {half + R"(, "animation": "reveal", "revealSpeed": 0.5)", 3, {{0.3f, 0.3f}, {0.7f, 0.7f}}, {}},
        {half + R"(, "pulseAmount": 0.6, "pulseSpeed": 1.5707963)", 1, {{0.2f, 0.2f}, {0.8f, 0.8f}}, {}},
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
    const std::string place = R"("x": 0.5, "y": 0.5, "width": 0.6, "height": 0.6, "edge": 0, "fillColor": [0, 0, 1],
        "animation": "")";
    clear(1, 0, 0, 1);
    draw(create(place));
    EXPECT_GT(at(0.6f, 0.35f)[0], 250);
    clear(1, 0, 0, 1);
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
    const ShapeText shape = create("\"x\": 0"), same = create("\"x\": 1");
    EXPECT_EQ(shape.logo.mask.texture, same.logo.mask.texture);
    ShapeText larger;
    const JsonValue params = parseJson(R"({"svgPath": "flag.svg", "rasterWidth": 512})");
    ASSERT_TRUE(createShapeText(larger, params, show.baseDir, program));
    EXPECT_NE(shape.logo.mask.texture, larger.logo.mask.texture);
    EXPECT_EQ(larger.logo.mask.height, 256);
    const TextureInfo picture = loadPicture(show.path("flag.svg"));
    EXPECT_EQ(picture.width, kPictureSide);
    EXPECT_EQ(picture.height, kPictureSide / 2);
    EXPECT_NE(log.text().find("  [TEX] " + show.path("flag.svg") + " (1024x512)\n"), std::string::npos);

    // The first texel row is the mask's top, and the picture's bottom, of which the left half is empty.
    const auto leftOfFirstRows = [](const TextureInfo& info) {
        std::vector<uint8_t> texels(static_cast<size_t>(info.width * info.height) * 4);
        glBindTexture(GL_TEXTURE_2D, info.texture);
        glGetTexImage(GL_TEXTURE_2D, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        return int{texels[static_cast<size_t>(info.height / 4 * info.width + info.width / 4) * 4]};
    };
    EXPECT_EQ(leftOfFirstRows(shape.logo.mask), 255);
    EXPECT_EQ(leftOfFirstRows(picture), 0);
}

TEST_F(ShapeTextTest, PicturesStandUprightAndTallOnesFillTheirHeight) {
    GLuint quad = linkProgram(kQuadVertexSource, kQuadFragmentSource, "image");
    gl.UseProgram(quad);
    setUniformVec2(quad, "uUvScale", 1, 1);
    setUniformFloat(quad, "uAlpha", 1);
    bindChannel(quad, 0, loadPicture(show.path("flag.svg")).texture);
    drawQuad();
    EXPECT_TRUE(isLit(0.2f, 0.2f) && isLit(0.8f, 0.2f) && isLit(0.8f, 0.8f));
    EXPECT_FALSE(isLit(0.2f, 0.8f));
    deleteProgram(quad);

    show.write("tall.SVG", "<path d=\"M0 0H10V40H0Z\">");
    const TextureInfo tall = loadPicture(show.path("tall.SVG"));
    EXPECT_TRUE(tall.width == 256 && tall.height == 1024) << tall.width << " x " << tall.height;
}

TEST_F(ShapeTextTest, FailuresAreSaidAndNotRemembered) {
    ShapeText shape;
    const JsonValue params = parseJson(R"({"svgPath": "late.svg"})");
    EXPECT_FALSE(createShapeText(shape, params, show.baseDir, program));
    draw(shape); // draws nothing
    const std::string path = show.write("late.svg", "<svg/>");
    EXPECT_EQ(loadPicture(path).texture, 0u);
    EXPECT_EQ(log.text(), "[SHAPETEXT] SVG not found: late.svg\n[SHAPETEXT] SVG has no supported paths: " + path
                              + "\n  [WARN] Texture load failed: " + path + "\n");
    show.write("late.svg", kFlag);
    EXPECT_NE(loadPicture(path).texture, 0u);
    EXPECT_TRUE(createShapeText(shape, params, show.baseDir, program));
}

} // namespace
