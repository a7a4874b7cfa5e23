#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include "effects/image_effect.h"
#include "effects/shader_effect.h"
#include "effects/warm_up.h"

namespace {

using EffectTest = EffectFixture;

TEST_F(EffectTest, BrokenBufferPassLeavesTheMainPass) {
    writeShader("cracked", "void main() { c = vec4(1); }");
    writeShader("cracked", "void main() { c = nothing; }", "crackedBufferA");
    const LogCapture log;
    EXPECT_PIXEL(draw(use(R"({"type": "Cracked"})")), Pixel{255, 255, 255, 255});
    EXPECT_TRUE(log.text().starts_with("[SHADER ERROR] Cracked_Buf:\n")) << log.text();
}

TEST_F(EffectTest, ChannelsFallBackOnlyWhereTheyAreSampled) {
    const LogCapture quiet;
    writeShader("sampling", "uniform sampler2D uTexture; void main() { c = texture(uTexture, vec2(0.5)); }");
    writeShader("blind", "uniform sampler2D iChannel1; void main() { c = texture(iChannel1, vec2(0.5)); }");
    writePicture("fallback.png", {0, 0, 255, 255});
    writePicture("red.png", {255, 0, 0, 255});
    show.write("broken.png", "no picture");

    const Pixel red = {255, 0, 0, 255}, blue = {0, 0, 255, 255};
    EXPECT_PIXEL(draw(use(R"({"type": "sampling", "params": {"texture": "red.png"}})")), red);
    EXPECT_PIXEL(draw(use(R"({"type": "Sampling"})")), blue);
    EXPECT_PIXEL(draw(use(R"({"type": "sampling", "params": {"texture": "broken.png"}})")), blue);

    EXPECT_PIXEL(draw(use(R"({"type": "blind", "params": {"channel1": "red.png"}})")), red);
    EXPECT_EQ(effect.channels[0].texture, 0u);
    EXPECT_EQ(loadTexture(device.textures, show.path("red.png")).texture,
              loadTexture(device.textures, show.path("red.png")).texture); // one a path
}

TEST_F(EffectTest, ChannelsWithoutAPictureSampleChannel0WhateverTheProgramDidBefore) {
    const LogCapture quiet;
    writeShader(
        "second",
        "uniform sampler2D uTex, uTexB; void main() { c = texture(uTexB, vec2(0.5)) + texture(uTex, vec2(0)) * 0.0; }");
    writePicture("red.png", {255, 0, 0, 255});
    writePicture("green.png", {0, 255, 0, 255});
    show.write("broken.png", "no picture");
    const auto with = [](const std::string& name) {
        return R"({"type": "second", "params": {"image": "red.png", "channel1": ")" + name + "\"}}";
    };
    for (const char* missing : {"gone.png", "broken.png"}) {
        EXPECT_PIXEL(draw(use(with("green.png"))), Pixel{0, 255, 0, 255});
        EXPECT_PIXEL(draw(use(with(missing))), Pixel{255, 0, 0, 255});
    }
}

TEST_F(EffectTest, OnlyWhatIsShownOrBrokenIsSaid) {
    writeShader("folders", "uniform sampler2D uTex; void main() { c = texture(uTex, vec2(0)); }");
    writeShader("kinetictext", "uniform sampler2D uTex; void main() { c = texture(uTex, vec2(0)); }");
    writePicture("fallback.png", {0, 0, 255, 255});
    show.write("folder.png/file", "");
    const LogCapture log;
    use(R"({"type": "kinetictext", "params": {"fontPath": "gone.json"}})"); // its picture will not be seen
    use(R"({"type": "folders", "params": {"image": "folder.png"}})"); // a folder is no file, as if it were missing
    EXPECT_EQ(log.text(), "[KTEXT] Color font json not found: gone.json\n  [TEX] " + show.path("fallback.png") +
                              " (2x2)\n  [TEX] using fallback for folders channel0\n");
}

TEST_F(EffectTest, EveryKindSetsTheStandardUniforms) {
    const LogCapture quiet;
    writePicture("font.png", {255, 255, 255, 255});
    show.write("font.json", R"({"texture": "font.png", "chars": "W"})");
    show.write("box.svg", "<svg><path d=\"M0 0H9V9Z\"/></svg>");
    const std::pair<const char*, const char*> cases[] = {
        // and their shaders
        {"bitmaptext", "bitmaptext"},
        {"kinetictext", "kinetictext"},
        {"lowerthird", "Text/LowerThird"},
        {"shapetext", "Text/ShapeText"},
        {"dynamicsplit", "composition/DynamicSplit"},
        {"mine", "mine"},
    };
    for (const auto& [type, shader] : cases) {
        // Red, green and blue where the values of both families are right, over the whole picture whatever the
        // vertices.
        const std::string path = std::string("assets/shaders/") + shader + (std::string(shader) == type ? "/x" : "");
        show.write(path + ".vert", "#version 330 core\nvoid main() { int i = gl_VertexID % 3;"
                                   "gl_Position = vec4(i == 1 ? 3 : -1, i == 2 ? 3 : -1, 0, 1); }");
        show.write(path + ".frag",
                   "#version 330 core\nout vec4 c; uniform float iTime, uTime, uAlpha; uniform int iFrame;"
                   "uniform vec3 iResolution; uniform vec2 uResolution; uniform vec4 iMouse; void main() {"
                   "c = vec4(iTime == 2.5 && uTime == 2.5, iFrame == 51 && iMouse.w == 1.0,"
                   "iResolution == vec3(8, 4, 1) && uResolution == vec2(8, 4), uAlpha + 0.75); }");
        use(std::string(R"({"id": "x", "duration": 0, "type": ")") + type + R"(", "params": {"fontPath": "font.json",
            "text": "W", "revealMode": "none", "svgPath": "box.svg", "blendMode": "alpha", "alpha": 0.25}})");
        ASSERT_TRUE(isRunnable(effect)) << type;
        now.time = 2.5;
        now.frame = 51;
        clear(0, 0, 0, 1);
        SCOPED_TRACE(type);
        EXPECT_PIXEL(draw(effect), Pixel{255, 255, 255, 255});
    }
}

TEST_F(EffectTest, ImagesStandUprightAndFit) {
    const LogCapture quiet;
    // Left half red above blue, right half green above white.
    writePicture("corners.png", {255, 0, 0, 255, 0, 255, 0, 255, 0, 0, 255, 255, 255, 255, 255, 255});
    use(R"({"type": "IMAGE", "params": {"image": "corners.png", "alpha": 0.4}})");
    EXPECT_PIXEL(draw(effect), Pixel{0, 255, 0, 102});
    EXPECT_PIXEL(pixel(0, kHeight - 1), Pixel{255, 0, 0, 102});
    EXPECT_PIXEL(pixel(0, 0), Pixel{0, 0, 255, 102});

    // A square in an output of 2:1 leaves transparent bars left and right. An entry without a type stands for its
    // image, stretched whatever it asks for.
    use(R"({"type": "image", "params": {"image": "corners.png", "fit": "Contain"}})");
    EXPECT_PIXEL(draw(effect), Pixel{0, 0, 0, 0});
    EXPECT_PIXEL(pixel(kWidth / 2 + 1, 0), Pixel{255, 255, 255, 255});
    EXPECT_PIXEL(draw(use(R"({"params": {"image": "corners.png", "fit": "contain"}})")), Pixel{0, 255, 0, 255});

    // Image width and height, in an output of 200 x 100; scale and offset.
    const struct {
        FitMode mode;
        int width, height;
        std::array<float, 4> fit;
    } cases[] = {
        {FitMode::contain, 400, 100, {1, 2, 0, -0.5f}},
        {FitMode::cover, 100, 100, {1, 0.5f, 0, 0.25f}},
        {FitMode::cover, 400, 100, {0.5f, 1, 0.25f, 0}},
        {FitMode::contain, 100, 0, {2, 1, -0.5f, 0}}, // no height counts as square
    };
    for (const auto& c : cases) {
        const ImageFit fit = fitImage(c.mode, c.width, c.height, 200, 100);
        EXPECT_EQ((std::array{fit.scaleX, fit.scaleY, fit.offsetX, fit.offsetY}), c.fit) << c.width;
    }
}

TEST_F(EffectTest, ParamsSetTheShadersOwnUniforms) {
    writeShader("tuned", "uniform float uSpeed = 0.2, uAlpha; uniform bool flip = false; uniform vec3 uTint = vec3(0);"
                         "void main() { c = vec4(uSpeed, flip ? 1.0 : 0.0, uTint.z, uAlpha); }");
    // Another entry of the same shader must not meet the values of the one before. Names that the player owns,
    // texts and arrays of other sizes stay without effect; the first of two counts.
    const std::pair<const char*, Pixel> cases[] = {
        {R"("speed": 0.4, "flip": true, "tint": [0, 0, 0.6], "alpha": 0.8)", {102, 255, 153, 204}},
        {"", {51, 0, 0, 255}},
        {R"("uAlpha": 0.1, "speed": 0.6, "speed": 1, "tint": [1], "flip": "yes")", {153, 0, 0, 255}},
    };
    for (const auto& [params, wanted] : cases) {
        EXPECT_PIXEL(draw(use(std::string(R"({"type": "tuned", "params": {)") + params + "}}")), wanted);
    }
}

TEST_F(EffectTest, BufferPassFeedsBackAndReachesTheMainPass) {
    // Each frame adds a fifth to the picture before; the main pass shows it by name and on channel 0.
    writeShader("echo", "uniform sampler2D uBufferA, iChannel0; void main() {"
                        "c = vec4(texture(uBufferA, vec2(0.5)).r, texture(iChannel0, vec2(0.5)).r, 0, 1); }");
    writeShader("echo",
                "uniform sampler2D uBufferA; void main() {"
                "c = texture(uBufferA, vec2(0.5)) + vec4(0.2, 0, 0, 0.2); }",
                "EchoBufferA");
    ASSERT_TRUE(hasBuffer(use(R"({"type": "echo"})")));

    // Neither blending nor the target of the caller may leak into the pass or be lost behind it.
    RenderTarget target;
    ensureTarget(target, kWidth, kHeight);
    now = drawInto(target, now);
    now.blending = BlendMode::alpha;
    warmUpEffect(device, effect, DrawTarget::offscreen, now);
    for (int frame = 1; frame <= 3; ++frame) {
        gl.BindFramebuffer(GL_FRAMEBUFFER, target.framebuffer);
        clear(0, 0, 0, 1);
        EXPECT_PIXEL(draw(effect), Pixel{51 * frame, 51 * frame, 0, 255});
        EXPECT_TRUE(glIsEnabled(GL_BLEND));
    }
    now.blending = BlendMode::opaque;

    // A picture that another effect hands over takes channel 0 of both passes.
    const InputTexture input = {solidTexture({0, 0, 0, 255}), 1, 1, 0};
    EXPECT_PIXEL(draw(effect, &input), Pixel{204, 0, 0, 255});

    clearBufferTargets(effect);
    EXPECT_PIXEL(draw(effect), Pixel{51, 51, 0, 255});
    now.width = now.height = 4; // a new size begins anew
    EXPECT_PIXEL(draw(effect), Pixel{51, 51, 0, 255});
    deleteTarget(target);
}

TEST_F(EffectTest, WarmUpTouchesOnePixelAndOnlyOnce) {
    const Pixel white = {255, 255, 255, 255}, black = {0, 0, 0, 255};
    writeShader("white", "void main() { c = vec4(1); }");
    use(R"({"type": "white"})");
    warmUpEffect(device, effect, DrawTarget::screen, screenDraw());
    EXPECT_PIXEL(pixel(0, 0), white);
    EXPECT_PIXEL(pixel(1, 1), black);
    EXPECT_PIXEL(draw(effect), white); // the scissor is off again
    // Another effect of the same sources has the same program, which is warm.
    clear(0, 0, 0, 1);
    use(R"({"type": "white"})");
    warmUpEffect(device, effect, DrawTarget::screen, screenDraw());
    EXPECT_PIXEL(pixel(0, 0), black);
}

TEST_F(EffectTest, TextsAreWarmInTheBlendingThatTheySet) {
    writeShader("kinetictext", "void main() { c = vec4(1, 1, 0, 1); }"); // nobody else's, so cold
    writePicture("font.png", {255, 255, 255, 255});
    show.write("font.json", R"({"texture": "font.png", "chars": "W"})");
    use(R"({"type": "kinetictext", "params": {"fontPath": "font.json"}})");
    warmUpEffect(device, effect, DrawTarget::screen, screenDraw());
    EXPECT_EQ(effect.main.program->warmStates, 1u << static_cast<int>(BlendMode::additive));
}

} // namespace
