#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include "effects/image_effect.h"
#include "effects/shader_effect.h"
#include "effects/warm_up.h"
#include "text/color_font.h"

namespace {

using EffectTest = EffectFixture;

TEST_F(EffectTest, FactorySaysWhatIsMissing) {
    writeShader("lonely", "void main() { c = vec4(1); }");
    std::filesystem::remove(show.path("assets/shaders/lonely/lonely.vert"));
    writeShader("halved", "void main() { c = vec4(1); }");
    show.write("assets/shaders/halved/halvedBufferA.frag", "");
    writeShader("broken", "void main() { c = nothing; }");
    writeShader("cracked", "void main() { c = vec4(1); }");
    writeShader("cracked", "void main() { c = nothing; }", "crackedBufferA.frag");

    const std::string noVert = "    [WARN] Vert not found: (none) (using default)\n";
    const struct {
        const char* json;
        bool runs;
        std::string log; // how it begins
    } cases[] = {
        {R"({"type": "Lonely"})", true, noVert},
        {R"({})", false, noVert + "    [ERROR] Frag not found: (none)\n"},
        {R"({"type": "halved"})", true,
         "    [WARN] BufferA not found: " + show.path("assets/shaders/halved/halvedBufferA.frag") + "\n"},
        {R"({"type": "Cracked"})", true, "[SHADER ERROR] Cracked_Buf:\n"},
        {R"({"type": "broken"})", false, "[SHADER ERROR] broken:\n"},
        {R"({"type": "image", "params": {"image": "missing.png"}})", true, ""},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.json);
        LogCapture log;
        Effect effect = createEffect(parse(c.json));
        EXPECT_EQ(isRunnable(effect), c.runs);
        const std::string text = log.text();
        EXPECT_TRUE(c.log.empty() ? text.empty() : text.starts_with(c.log)) << text;
        draw(effect);
        releaseEffect(effect);
        releaseEffect(effect);
        EXPECT_EQ(effect.kind, EffectKind::none);
    }
}

TEST_F(EffectTest, ChannelsFallBackOnlyWhereTheyAreSampled) {
    LogCapture log;
    writeShader("sampling", "uniform sampler2D uTexture; void main() { c = texture(uTexture, vec2(0.5)); }");
    writeShader("blind", "uniform sampler2D iChannel1; void main() { c = texture(iChannel1, vec2(0.5)); }");
    writePicture("fallback.png", {0, 0, 255, 255});
    writePicture("red.png", {255, 0, 0, 255});
    show.write("broken.png", "no picture");

    EXPECT_PIXEL(drawOnce(R"({"type": "sampling", "params": {"texture": "red.png"}})"), Pixel{255, 0, 0, 255});
    EXPECT_PIXEL(drawOnce(R"({"type": "Sampling"})"), Pixel{0, 0, 255, 255});
    EXPECT_NE(log.text().find("  [TEX] using fallback for Sampling channel0\n"), std::string::npos);
    EXPECT_PIXEL(drawOnce(R"({"type": "sampling", "params": {"texture": "broken.png"}})"), Pixel{0, 0, 255, 255});
    EXPECT_NE(log.text().find("  [WARN] Texture load failed: " + show.path("broken.png") + "\n"), std::string::npos);

    Effect blind = createEffect(parse(R"({"type": "blind", "params": {"channel1": "red.png"}})"));
    EXPECT_EQ(blind.channels[0].texture, 0u);
    EXPECT_PIXEL(draw(blind), Pixel{255, 0, 0, 255});
    releaseEffect(blind);
    EXPECT_EQ(loadTexture(show.path("red.png")).texture, loadTexture(show.path("red.png")).texture); // one a path
}

TEST_F(EffectTest, ImagesStandUprightAndFit) {
    LogCapture log;
    // Left half red above blue, right half green above white.
    const std::vector<uint8_t> rows = {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255};
    std::string png;
    ASSERT_TRUE(encodePng(rows.data(), 2, 2, true, png));
    show.write("corners.png", png);
    Effect effect = createEffect(parse(R"({"type": "IMAGE", "params": {"image": "corners.png", "alpha": 0.4}})"));
    draw(effect);
    EXPECT_PIXEL(pixel(0, kHeight - 1), Pixel{255, 0, 0, 102});
    EXPECT_PIXEL(pixel(kWidth - 1, kHeight - 1), Pixel{0, 255, 0, 102});
    EXPECT_PIXEL(pixel(0, 0), Pixel{0, 0, 255, 102});
    releaseEffect(effect);

    // A square in an output of 2:1 leaves transparent bars left and right.
    writePicture("square.png", {255, 255, 255, 255});
    effect = createEffect(parse(R"({"type": "image", "params": {"image": "square.png", "fit": "Contain"}})"));
    draw(effect);
    EXPECT_PIXEL(pixel(0, 1), Pixel{0, 0, 0, 0});
    EXPECT_PIXEL(pixel(kWidth / 2, 1), Pixel{255, 255, 255, 255});
    releaseEffect(effect);

    // An entry without a type stands for its image, stretched whatever it asks for.
    EXPECT_PIXEL(drawOnce(R"({"params": {"image": "square.png", "fit": "contain"}})"), Pixel{255, 255, 255, 255});

    const struct {
        FitMode mode;
        int width, height; // of the image; the output is 200 x 100
        ImageFit wanted;
    } cases[] = {
        {FitMode::stretch, 10, 90, {1, 1, 0, 0}},
        {FitMode::contain, 100, 100, {2, 1, -0.5f, 0}},
        {FitMode::contain, 400, 100, {1, 2, 0, -0.5f}},
        {FitMode::cover, 100, 100, {1, 0.5f, 0, 0.25f}},
        {FitMode::cover, 400, 100, {0.5f, 1, 0.25f, 0}},
        {FitMode::contain, 100, 0, {2, 1, -0.5f, 0}}, // no height counts as square
    };
    for (const auto& c : cases) {
        const ImageFit fit = fitImage(c.mode, c.width, c.height, 200, 100);
        EXPECT_TRUE(fit.scaleX == c.wanted.scaleX && fit.scaleY == c.wanted.scaleY && fit.offsetX == c.wanted.offsetX
                    && fit.offsetY == c.wanted.offsetY) << c.width << " x " << c.height;
    }
}

TEST_F(EffectTest, ParamsSetTheShadersOwnUniforms) {
    writeShader("tuned", "uniform float uSpeed = 0.2; uniform bool flip = false; uniform vec3 uTint = vec3(0); uniform float uAlpha;"
                         "void main() { c = vec4(uSpeed, flip ? 1.0 : 0.0, uTint.z, uAlpha); }");
    EXPECT_PIXEL(drawOnce(R"({"type": "tuned", "params": {"speed": 0.4, "flip": true, "tint": [0, 0, 0.6], "alpha": 0.8}})"),
                 Pixel{102, 255, 153, 204});
    // Another entry of the same shader must not meet the values of the one before.
    EXPECT_PIXEL(drawOnce(R"({"type": "tuned"})"), Pixel{51, 0, 0, 255});
    // Names that the player owns, texts and arrays of other sizes stay without effect; the first of two counts.
    EXPECT_PIXEL(drawOnce(R"({"type": "tuned", "params": {"uAlpha": 0.1, "speed": 0.6, "speed": 1, "tint": [1], "flip": "yes"}})"),
                 Pixel{153, 0, 0, 255});
}

TEST_F(EffectTest, BufferPassFeedsBackAndReachesTheMainPass) {
    // Each frame adds a fifth to the picture before; the main pass shows it by name and on channel 0.
    writeShader("echo", "uniform sampler2D uBufferA, iChannel0; void main() {"
                        "c = vec4(texture(uBufferA, vec2(0.5)).r, texture(iChannel0, vec2(0.5)).r, 0, 1); }");
    writeShader("echo", "uniform sampler2D uBufferA; void main() {"
                        "c = texture(uBufferA, vec2(0.5)) + vec4(0.2, 0, 0, 0.2); }", "EchoBufferA.frag");
    Effect effect = createEffect(parse(R"({"type": "echo"})"));
    ASSERT_TRUE(effect.hasBuffer);

    // Neither blending nor the target of the caller may leak into the pass or be lost behind it.
    RenderTarget target;
    ensureTarget(target, kWidth, kHeight);
    bindTarget(target);
    applyDrawState(DrawState::alpha);
    warmUpEffect(effect, DrawState::alpha, DrawTarget::offscreen, kWidth, kHeight);
    for (int frame = 1; frame <= 3; ++frame) {
        clear(0, 0, 0, 1);
        EXPECT_PIXEL(draw(effect), Pixel{51 * frame, 51 * frame, 0, 255});
        EXPECT_TRUE(glIsEnabled(GL_BLEND));
    }
    glDisable(GL_BLEND);

    // A picture that another effect hands over takes channel 0 of both passes.
    const InputTexture input = {solidTexture({0, 0, 0, 255}), 1, 1, 0};
    EXPECT_PIXEL(draw(effect, &input), Pixel{204, 0, 0, 255});

    clearBufferTargets(effect);
    EXPECT_PIXEL(draw(effect), Pixel{51, 51, 0, 255});
    drawEffectPasses(effect, 4, 4, nullptr); // a new size begins anew
    EXPECT_PIXEL(pixel(3, 3), Pixel{51, 51, 0, 255});
    releaseEffect(effect);
    deleteTarget(target);
}

TEST_F(EffectTest, WarmUpTouchesOnePixelAndOnlyOnce) {
    writeShader("white", "void main() { c = vec4(1); }");
    Effect effect = createEffect(parse(R"({"type": "white"})"));
    warmUpEffect(effect, DrawState::opaque, DrawTarget::screen, kWidth, kHeight);
    EXPECT_PIXEL(pixel(0, 0), Pixel{255, 255, 255, 255});
    EXPECT_PIXEL(pixel(1, 1), Pixel{0, 0, 0, 255});
    clear(0, 0, 0, 1);
    warmUpEffect(effect, DrawState::opaque, DrawTarget::screen, kWidth, kHeight);
    EXPECT_PIXEL(pixel(0, 0), Pixel{0, 0, 0, 255});
    EXPECT_PIXEL(draw(effect), Pixel{255, 255, 255, 255}); // the scissor is off again

    // Created anew, as at a loop wrap, the effect gets its program back, warm.
    const GLuint program = effect.mainProgram;
    releaseEffect(effect);
    effect = createEffect(parse(R"({"type": "white"})"));
    EXPECT_EQ(effect.mainProgram, program);
    EXPECT_FALSE(markWarm(program, static_cast<uint32_t>(DrawState::opaque)));
    releaseEffect(effect);
}

TEST_F(EffectTest, TextsAreWarmInTheBlendingThatTheySet) {
    writeShader("kinetictext", "void main() { c = vec4(1, 1, 0, 1); }"); // nobody else's, so cold
    writePicture("font.png", {255, 255, 255, 255});
    show.write("font.json", R"({"texture": "font.png", "chars": "W"})");
    Effect effect = createEffect(parse(R"({"type": "kinetictext", "params": {"fontPath": "font.json"}})"));
    warmUpEffect(effect, DrawState::opaque, DrawTarget::screen, kWidth, kHeight);
    EXPECT_FALSE(markWarm(effect.mainProgram, static_cast<uint32_t>(DrawState::additive)));
    EXPECT_TRUE(markWarm(effect.mainProgram, static_cast<uint32_t>(DrawState::opaque)));
    releaseEffect(effect);
    deleteColorFonts();
}

} // namespace
