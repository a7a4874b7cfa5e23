// The transition and glitch shaders that come with the player, as the gallery plays them.
#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include <cmath>

namespace {

constexpr int kSide = 96;                   // pixels
using Picture = std::vector<unsigned char>; // RGBA

class ShippedStylesTest : public EffectFixture {
protected:
    void SetUp() override {
        EffectFixture::SetUp();
        ensureTarget(output, kSide, kSide);
        now = drawInto(output, now);
        ASSERT_TRUE(createTransitionRenderer(device, renderer, GALLERY_PATH, "gallery"));
    }

    void TearDown() override {
        deleteTarget(output);
        EffectFixture::TearDown();
    }

    Picture readPicture() const {
        Picture picture(kSide * kSide * 4);
        gl.BindFramebuffer(GL_FRAMEBUFFER, output.framebuffer);
        glReadPixels(0, 0, kSide, kSide, GL_RGBA, GL_UNSIGNED_BYTE, picture.data());
        return picture;
    }

    // A picture with detail everywhere; `seed` makes another one.
    GLuint detailedTexture(int seed) {
        Picture texels;
        for (int i = 0; i < kSide * kSide; ++i) {
            const int x = i % kSide, y = i / kSide;
            const double wave = std::sin(x * (0.11 + 0.05 * seed)) * std::cos(y * (0.17 - 0.04 * seed));
            for (const int value : {seed ? 40 + x : 220 - x, 128 + static_cast<int>(100 * wave), 20 + 2 * y, 255}) {
                texels.push_back(static_cast<unsigned char>(value));
            }
        }
        const GLuint texture = solidTexture({0, 0, 0, 255});
        allocateTexels(kSide, kSide, texels.data());
        return texture;
    }

    Picture mix(const TransitionLook& look, float progress) {
        renderTransition(device, renderer, now, from, to, progress, look);
        return readPicture();
    }

    Picture drawAt(float t, const InputTexture* picture) {
        now.time = static_cast<double>(t);
        bindTarget(output);
        clear(0, 0, 0, 1);
        draw(effect, picture);
        return readPicture();
    }

    GLuint from = detailedTexture(0), to = detailedTexture(1);
    RenderTarget output;
};

double meanDifference(const Picture& a, const Picture& b) {
    double sum = 0.0;
    for (size_t i = 0; i < a.size(); ++i) sum += std::abs(a[i] - b[i]);
    return sum / static_cast<double>(a.size());
}

bool areEqual(const Picture& a, const Picture& b) {
    return std::equal(a.begin(), a.end(), b.begin(), [](int x, int y) { return std::abs(x - y) <= 1; });
}

void expectAllDiffer(const std::vector<std::string>& names, const std::vector<Picture>& pictures) {
    for (size_t i = 0; i < pictures.size(); ++i) {
        for (size_t k = 0; k < i; ++k) {
            EXPECT_GT(meanDifference(pictures[i], pictures[k]), 1.0) << names[i] << " looks like " << names[k];
        }
    }
}

TEST_F(ShippedStylesTest, TransitionsBeginAndEndExactlyAndAreDistinct) {
    const Picture first = mix({}, 0.0f), last = mix({}, 1.0f);
    ASSERT_GT(meanDifference(first, last), 30.0) << "the control: the two pictures themselves differ";

    const char* wild[] = {
        R"({"startDelay": 0.9, "softness": 0, "bands": 0, "blockSize": 0, "noiseScale": 0, "dotFrequency": 0})",
        R"({"startDelay": 1, "softness": 50, "bands": -7, "rotation": 1234, "blockSize": -5, "noiseThreshold": 9,
            "waveAmplitude": 40, "dotPower": -3})",
        R"({"startDelay": -4, "softness": -1, "bands": 100000, "rotation": -33, "blockSize": 1e9, "noiseSpeed": -1e6,
            "noiseScale": 1e6, "dotFrequency": 1e7, "dotPower": 0})",
    };
    const std::vector<std::string> names = {"fade",      "wipe",        "bands",         "curtains",     "horizontal",
                                            "dissolve",  "noise_smoke", "noise_organic", "noise_glitch", "wavy",
                                            "crosswarp", "burning",     "pixellated",    "radialwipe",   "dots"};
    std::vector<Picture> halves;
    for (const std::string& name : names) {
        SCOPED_TRACE(name);
        TransitionLook look;
        look.effectId = transitionStyleCode(name);
        halves.push_back(mix(look, 0.5f));
        EXPECT_GT(meanDifference(halves.back(), first), 3.0);
        EXPECT_GT(meanDifference(halves.back(), last), 3.0);
        look.startDelay = 0.6f; // holds the first picture back
        EXPECT_TRUE(areEqual(mix(look, 0.5f), first));
        for (const char* params : wild) {
            SCOPED_TRACE(params);
            look = readMixLook(parseJson(params));
            look.effectId = transitionStyleCode(name);
            EXPECT_TRUE(areEqual(mix(look, 0.0f), first));
            EXPECT_TRUE(areEqual(mix(look, 1.0f), last));
        }
    }
    expectAllDiffer(names, halves);
}

TEST_F(ShippedStylesTest, GlitchesChangeTheirPictureAndMove) {
    const std::vector<std::string> styles = {"vhstape",
                                             "rain",
                                             "pattern",
                                             "rainingblood",
                                             "glitchboi",
                                             "sinewave",
                                             "rgbsplit",
                                             "gridvid",
                                             "moving",
                                             "signal",
                                             "blurmist",
                                             "sw",
                                             "hardcode",
                                             "brokentv",
                                             "liquiddos",
                                             "memleak",
                                             "crttube",
                                             "pixel",
                                             "chromaticaberration",
                                             "retrobn",
                                             "generic"};
    const InputTexture input = {from, kSide, kSide, 0};
    const Picture plain = mix({}, 0.0f);
    clear(0, 0, 0, 1);
    const Picture black = readPicture();
    std::vector<Picture> pictures;
    for (const std::string& style : styles) {
        SCOPED_TRACE(style);
        ASSERT_TRUE(isRunnable(use(R"({"type": "glitch", "params": {"style": ")" + style + "\"}}", GALLERY_PATH)));
        pictures.push_back(drawAt(0.7f, &input));
        EXPECT_GT(meanDifference(pictures.back(), plain), 1.0);
        EXPECT_GT(meanDifference(pictures.back(), drawAt(1.2f, &input)), 0.3) << "it stands still";
        resetTextureUnits(device.textures); // without a picture it shows one of its own
        EXPECT_GT(meanDifference(drawAt(0.7f, nullptr), black), 2.0);
    }
    expectAllDiffer(styles, pictures);
}

} // namespace
