// Effects of a show in a temporary folder, drawn on real GL.
#pragma once

#include "support/gl_test.h"
#include "support/temp_show.h"

#include "config/runtime_config.h"
#include "effects/effect.h"
#include "gpu/program_pool.h"
#include "gpu/shader_lookup.h"
#include "gpu/textures.h"
#include "platform/image.h"

class EffectFixture : public GlTest {
protected:
    static void TearDownTestSuite() {
        deleteTextures();
        deletePooledPrograms();
        GlTest::TearDownTestSuite();
    }

    // The shader of a type; "void main" and the output "c" are the test's.
    void writeShader(const std::string& type, const std::string& body, const std::string& file = "") {
        const std::string folder = "assets/shaders/" + type + "/";
        show.write(folder + type + ".vert", kQuadVertexSource);
        show.write(folder + (file.empty() ? type + ".frag" : file), "#version 330 core\nout vec4 c;\n" + body);
    }

    // A picture of one colour.
    std::string writePicture(const std::string& name, std::array<uint8_t, 4> colour, int width = 2, int height = 2) {
        std::vector<uint8_t> pixels(static_cast<size_t>(width * height) * 4);
        for (size_t i = 0; i < pixels.size(); ++i) pixels[i] = colour[i % 4];
        std::string png;
        EXPECT_TRUE(encodePng(pixels.data(), width, height, true, png));
        return show.write(name, png);
    }

    TimelineEntry parse(const std::string& json) {
        RuntimeConfig config;
        config.baseDir = show.baseDir;
        config.fallbackImagePath = show.path("fallback.png");
        config.shaders.resolve = resolveShaderSources;
        return parseTimelineEntry(parseJson(json), config, config.baseDir);
    }

    Pixel draw(Effect& effect, const InputTexture* input = nullptr) {
        drawEffectPasses(effect, kWidth, kHeight, input);
        return pixel(kWidth - 1, kHeight - 1);
    }

    // Creates, draws once, releases.
    Pixel drawOnce(const std::string& json) {
        Effect effect = createEffect(parse(json));
        EXPECT_TRUE(isRunnable(effect)) << json;
        const Pixel result = draw(effect);
        releaseEffect(effect);
        return result;
    }

    TempShow show;
};
