// Effects of a show in a temporary folder, drawn on real GL.
#pragma once

#include "support/gl_test.h"
#include "support/temp_show.h"

#include "config/runtime_config.h"
#include "effects/effect.h"
#include "foundation/json.h"
#include "platform/image.h"

class EffectFixture : public GlTest {
protected:
    // The next case finds nothing loaded.
    void TearDown() override {
        releaseEffect(effect);
        deleteFonts(fonts);
        deleteTextures(device.textures);
        GlTest::TearDown();
    }

    // A shader below assets/shaders; "void main" and the output "c" are the test's.
    void writeShader(const std::string& folder, const std::string& body, const std::string& name = "") {
        const std::string path = "assets/shaders/" + folder + "/" + (name.empty() ? folder : name);
        show.write(path + ".vert", kQuadVertexSource);
        show.write(path + ".frag", "#version 330 core\nout vec4 c;\n" + body);
    }

    // "paint" shows the colour of its params, "clock" its time and frame; the transition mixes evenly.
    void writeCommonShaders() {
        writeShader("paint", "uniform vec4 colour = vec4(1); void main() { c = colour; }");
        writeShader("clock", "uniform float iTime; uniform int iFrame;"
                             "void main() { c = vec4(iTime / 10.0, float(iFrame) / 255.0, 0, 1); }");
        writeShader("transition",
                    "uniform sampler2D texA, texB; uniform float progress; void main() {"
                    "c = mix(texture(texA, vec2(0.5)), texture(texB, vec2(0.5)), progress); }",
                    "Transition");
    }

    // A picture of 2 x 2 pixels, or of the one given.
    void writePicture(const std::string& name, std::vector<uint8_t> rgba) {
        while (rgba.size() < 16) rgba.push_back(rgba[rgba.size() - 4]);
        std::string png;
        EXPECT_TRUE(encodePng(rgba.data(), 2, 2, true, png));
        show.write(name, png);
    }

    Effect create(const std::string& json, const char* baseDir = nullptr) {
        RuntimeConfig config;
        config.baseDir = baseDir ? baseDir : show.baseDir;
        config.fallbackImagePath = show.path("fallback.png");
        const Reading at = {&config.assets, &config.baseDir};
        return createEffect({device, fonts, config, kWidth, kHeight}, parseTimelineEntry(parseJson(json), at));
    }

    // Puts another effect in the place of the test's own.
    Effect& use(const std::string& json, const char* baseDir = nullptr) {
        releaseEffect(effect);
        return effect = create(json, baseDir);
    }

    Pixel draw(Effect& drawn, const InputTexture* input = nullptr) {
        Draw draw = now;
        draw.opacity = drawn.alpha;
        draw.input = input;
        drawEffect(device, drawn, draw);
        gl.BindFramebuffer(GL_FRAMEBUFFER, draw.framebuffer);
        return pixel(draw.width - 1, draw.height - 1);
    }

    // A draw over framebuffer 0.
    static Draw screenDraw(BlendMode blending = BlendMode::opaque) {
        Draw draw;
        draw.width = kWidth;
        draw.height = kHeight;
        draw.blending = blending;
        return draw;
    }

    TempShow show;
    Fonts fonts;
    Effect effect;           // released at the end of the test, like the fonts
    Draw now = screenDraw(); // where and when it is drawn
    TransitionRenderer renderer;
};
