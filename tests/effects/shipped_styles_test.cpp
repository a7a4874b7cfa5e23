// The transition and glitch shaders that come with the player, as the gallery plays them.
#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include <cmath>

namespace {

constexpr int kPictureWidth = 128, kPictureHeight = 72;
using Picture = std::vector<unsigned char>; // RGBA

class ShippedStylesTest : public EffectFixture {
protected:
    void SetUp() override {
        EffectFixture::SetUp();
        ensureTarget(output, kPictureWidth, kPictureHeight);
        bindTarget(output);
    }

    void TearDown() override {
        releaseTransitionRenderer(renderer);
        deleteTarget(output);
        EffectFixture::TearDown();
    }

    Picture readPicture() const {
        Picture picture(kPictureWidth * kPictureHeight * 4);
        gl.BindFramebuffer(GL_FRAMEBUFFER, output.framebuffer);
        glReadPixels(0, 0, kPictureWidth, kPictureHeight, GL_RGBA, GL_UNSIGNED_BYTE, picture.data());
        return picture;
    }

    // A picture with detail everywhere; `seed` makes another one.
    GLuint detailedTexture(int seed) {
        Picture texels(kPictureWidth * kPictureHeight * 4);
        for (int y = 0; y < kPictureHeight; ++y) {
            for (int x = 0; x < kPictureWidth; ++x) {
                unsigned char* texel = &texels[static_cast<size_t>((y * kPictureWidth + x) * 4)];
                const double wave = std::sin(x * (0.11 + 0.05 * seed)) * std::cos(y * (0.17 - 0.04 * seed));
                texel[0] = static_cast<unsigned char>(seed ? 40 + x : 220 - x);
                texel[1] = static_cast<unsigned char>(128 + 100 * wave);
                texel[2] = static_cast<unsigned char>(seed ? 250 - 3 * y : 20 + 2 * y);
                texel[3] = 255;
            }
        }
        const GLuint texture = solidTexture({0, 0, 0, 255});
        glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA8, kPictureWidth, kPictureHeight, 0, GL_RGBA, GL_UNSIGNED_BYTE, texels.data());
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_S, GL_CLAMP_TO_EDGE);
        glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_WRAP_T, GL_CLAMP_TO_EDGE);
        return texture;
    }

    Picture mix(const TransitionLook& look, float progress, GLuint from, GLuint to) {
        renderTransition(renderer, output.framebuffer, kPictureWidth, kPictureHeight, from, to, progress, look);
        return readPicture();
    }

    TransitionRenderer renderer;
    RenderTarget output;
};

int largestDifference(const Picture& a, const Picture& b) {
    int largest = 0;
    for (size_t i = 0; i < a.size(); ++i) largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

double meanDifference(const Picture& a, const Picture& b) {
    double sum = 0.0;
    for (size_t i = 0; i < a.size(); ++i) sum += std::abs(a[i] - b[i]);
    return sum / static_cast<double>(a.size());
}

void expectAllDiffer(const std::vector<std::string>& names, const std::vector<Picture>& pictures, double least) {
    for (size_t i = 0; i < pictures.size(); ++i) {
        for (size_t k = 0; k < i; ++k) {
            EXPECT_GT(meanDifference(pictures[i], pictures[k]), least) << names[i] << " looks like " << names[k];
        }
    }
}

TEST_F(ShippedStylesTest, TransitionsBeginAndEndExactlyAndAreDistinct) {
    LogCapture log;
    ASSERT_TRUE(createTransitionRenderer(renderer, GALLERY_PATH, "gallery")) << log.text();
    const GLuint from = detailedTexture(0), to = detailedTexture(1);
    TransitionLook fade;
    const Picture first = mix(fade, 0.0f, from, to), last = mix(fade, 1.0f, from, to);
    ASSERT_GT(meanDifference(first, last), 30.0) << "the control: the two pictures themselves differ";

    const char* wild[] = {
        R"({})", R"({"startDelay": 0.9, "softness": 0, "bands": 0, "blockSize": 0, "noiseScale": 0, "dotFrequency": 0, "dotPower": 0})",
        R"({"startDelay": 1, "softness": 50, "bands": -7, "rotation": 1234, "blockSize": -5, "noiseThreshold": 9, "waveAmplitude": 40, "dotPower": -3})",
        R"({"startDelay": -4, "softness": -1, "bands": 100000, "rotation": -33, "blockSize": 1e9, "noiseSpeed": -1e6, "noiseScale": 1e6, "dotFrequency": 1e7})",
    };
    const std::vector<std::string> names = {"fade", "wipe", "bands", "curtains", "horizontal", "dissolve", "noise_smoke", "noise_organic",
                                            "noise_glitch", "wavy", "crosswarp", "burning", "pixellated", "radialwipe", "dots"};
    std::vector<Picture> halves;
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        for (const char* params : wild) {
            SCOPED_TRACE(params);
            const TransitionLook look = readTransitionLook(name, parseJson(params));
            EXPECT_LE(largestDifference(mix(look, 0.0f, from, to), first), 1);
            EXPECT_LE(largestDifference(mix(look, 1.0f, from, to), last), 1);
        }
        halves.push_back(mix(readTransitionLook(name, {}), 0.5f, from, to));
        EXPECT_GT(meanDifference(halves.back(), first), 3.0);
        EXPECT_GT(meanDifference(halves.back(), last), 3.0);
        // The delay holds the first picture back.
        EXPECT_LE(largestDifference(mix(readTransitionLook(name, parseJson(R"({"startDelay": 0.6})")), 0.5f, from, to), first), 1);
    }
    expectAllDiffer(names, halves, 1.0);
}

TEST_F(ShippedStylesTest, GlitchesChangeTheirPictureAndMove) {
    const std::vector<std::string> styles = {
        "vhstape", "rain", "pattern", "rainingblood", "glitchboi", "sinewave", "rgbsplit", "gridvid", "moving", "signal", "blurmist",
        "sw", "hardcode", "brokentv", "liquiddos", "memleak", "crttube", "pixel", "chromaticaberration", "retrobn", "generic"};
    const InputTexture input = {detailedTexture(0), kPictureWidth, kPictureHeight, 0};
    LogCapture log;
    ASSERT_TRUE(createTransitionRenderer(renderer, GALLERY_PATH, "gallery")) << log.text();
    const Picture plain = mix({}, 0.0f, input.texture, input.texture);

    RuntimeConfig config;
    config.shaders.resolve = resolveShaderSources;
    std::vector<Picture> pictures;
    for (const std::string& style : styles) {
        SCOPED_TRACE(style);
        Effect effect = createEffect(parseTimelineEntry(parseJson(R"({"type": "glitch", "params": {"style": ")" + style + "\"}}"), config, GALLERY_PATH));
        ASSERT_TRUE(isRunnable(effect)) << log.text();
        const auto drawAt = [&](float t, const InputTexture* picture) {
            effect.localTime = t;
            bindTarget(output);
            clear(0, 0, 0, 1);
            drawEffectPasses(effect, kPictureWidth, kPictureHeight, picture);
            return readPicture();
        };
        pictures.push_back(drawAt(0.7f, &input));
        EXPECT_GT(meanDifference(pictures.back(), plain), 1.0);
        EXPECT_GT(meanDifference(pictures.back(), drawAt(1.2f, &input)), 0.3) << "it stands still";
        // Without a picture it shows one of its own.
        bindBlackTextures();
        const Picture alone = drawAt(0.7f, nullptr);
        EXPECT_GT(meanDifference(alone, Picture(alone.size(), 0)), 64.0 + 2.0) << "nothing but opaque black";
        releaseEffect(effect);
    }
    expectAllDiffer(styles, pictures, 1.0);
}

} // namespace
