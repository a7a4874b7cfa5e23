#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include "foundation/json.h"

namespace {

class TransitionTest : public EffectFixture {
protected:
    // A renderer whose shader paints `expression`, a value in 0..255, into red.
    void build(const std::string& declarations, const std::string& expression) {
        writeShader("transition", declarations + " void main() { c = vec4((" + expression + ") / 255.0, 0, 0, 1); }",
                    "Transition");
        const LogCapture quiet;
        ASSERT_TRUE(initTransitionRenderer(device, renderer, show.baseDir));
    }

    int paint(const TransitionLook& look, float progress = 0.5f, GLuint from = 0, GLuint to = 0) {
        renderTransition(device, renderer, now, from, to, progress, look);
        return pixel(kWidth - 1, kHeight - 1)[0];
    }
};

TEST_F(TransitionTest, ParametersReachTheirUniforms) {
    const JsonValue params = parseJson(
        R"({"mixMode": "NOISE_glitch", "startDelay": 0.77, "softness": 0.66, "bands": 55.9, "rotation": 44,
        "rotationDeg": 5, "blockSize": 33, "blockSizePx": 5, "noiseScale": 2.2, "noiseSpeed": 1.1,
        "noiseThreshold": 0.9, "waveAmplitude": 0.8, "dotFrequency": 7, "dotPower": 6})");
    const std::pair<std::string, double> cases[] = {
        {"float startDelay", 0.77},   {"float softness", 0.66},  {"int bands", 55},
        {"float rotationDeg", 44},    {"float blockSizePx", 33}, {"float noiseScale", 2.2},
        {"float noiseSpeed", 1.1},    {"int effectId", 8},       {"float noiseThreshold", 0.9},
        {"float waveAmplitude", 0.8}, {"float dotFrequency", 7}, {"float dotPower", 6},
    };
    for (const auto& [uniform, value] : cases) {
        const std::string name = uniform.substr(uniform.find(' '));
        build("uniform " + uniform + ";", "float(" + name + ") / " + std::to_string(value) + " * 200.0");
        EXPECT_EQ(paint(readMixLook(params)), 200) << uniform;
    }
    build("uniform vec2 screenSize;", "screenSize.x * 10.0 + screenSize.y");
    EXPECT_EQ(paint({}), kWidth * 10 + kHeight);
    EXPECT_EQ(transitionStyleCode("pixelated"), 0); // no name of the table
}

TEST_F(TransitionTest, ProgressIsClampedAndPicturesAreInOrder) {
    build("uniform float progress;", "100.0 + progress * 100.0");
    const std::pair<float, int> cases[] = {{-0.2f, 100}, {0.5f, 150}, {1.7f, 200}};
    for (const auto& [progress, wanted] : cases) EXPECT_EQ(paint({}, progress), wanted) << progress;

    const GLuint from = solidTexture({30, 0, 0, 255}), to = solidTexture({70, 0, 0, 255});
    build("uniform sampler2D texA, texB;", "(texture(texA, vec2(0.5)).r + texture(texB, vec2(0.5)).r * 2.0) * 255.0");
    glEnable(GL_BLEND);
    EXPECT_EQ(paint({}, 0.5f, from, to), 170);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
}

TEST_F(TransitionTest, BrokenShadersMakeItCut) {
    writeShader("transition", "no shader", "Transition");
    const LogCapture log;
    EXPECT_FALSE(initTransitionRenderer(device, renderer, show.baseDir));
    EXPECT_TRUE(log.text().ends_with("[TRANS] shader compile/link failed; transitions will cut.\n")) << log.text();
}

} // namespace
