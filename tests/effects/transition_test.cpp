#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include <filesystem>

namespace {

class TransitionTest : public EffectFixture {
protected:
    void TearDown() override {
        releaseTransitionRenderer(renderer);
        EffectFixture::TearDown();
    }

    // A renderer whose shader paints `expression`, a value in 0..255, into red.
    void build(const std::string& declarations, const std::string& expression) {
        releaseTransitionRenderer(renderer);
        writeShader("transition", declarations + " void main() { c = vec4((" + expression + ") / 255.0, 0.0, 0.0, 1.0); }",
                    "Transition.frag");
        std::filesystem::rename(show.path("assets/shaders/transition/transition.vert"),
                                show.path("assets/shaders/transition/Transition.vert"));
        LogCapture log;
        ASSERT_TRUE(initTransitionRenderer(renderer, show.baseDir)) << log.text();
        EXPECT_EQ(log.text(), "[TRANS] renderer ready\n");
    }

    int paint(const TransitionLook& look, float progress = 0.5f, GLuint from = 0, GLuint to = 0) {
        renderTransition(renderer, 0, kWidth, kHeight, from, to, progress, look);
        return pixel(kWidth - 1, kHeight - 1)[0];
    }

    TransitionRenderer renderer;
};

TEST_F(TransitionTest, NamesSelectStyles) {
    build("uniform int effectId;", "float(effectId)");
    const std::pair<const char*, int> cases[] = {
        {"Wipe", 1}, {"vertical", 1}, {"NOISE_glitch", 8}, {"dots", 14}, {"pixelated", 0}, {"", 0}, {"cut", 0}};
    for (const auto& [name, code] : cases) EXPECT_EQ(paint(readTransitionLook(name, {})), code) << name;
}

TEST_F(TransitionTest, ParametersReachTheirUniforms) {
    const struct {
        const char* uniform;
        const char* type;
        const char* params; // what sets it to 77 in the scale
        float scale;
        int byDefault; // in the scale
    } cases[] = {
        {"startDelay", "float", R"({"startDelay": 0.77})", 100, 0},
        {"softness", "float", R"({"softness": 0.77})", 100, 2},
        {"bands", "int", R"({"bands": 77.9})", 1, 8},
        {"rotationDeg", "float", R"({"rotation": 77, "rotationDeg": 5})", 1, 0},
        {"blockSizePx", "float", R"({"blockSize": 77, "blockSizePx": 5})", 1, 48},
        {"noiseScale", "float", R"({"noiseScale": 7.7})", 10, 30},
        {"noiseSpeed", "float", R"({"noiseSpeed": 7.7})", 10, 10},
        {"noiseThreshold", "float", R"({"noiseThreshold": 0.77})", 100, 50},
        {"waveAmplitude", "float", R"({"waveAmplitude": 0.77})", 100, 10},
        {"dotFrequency", "float", R"({"dotFrequency": 77})", 1, 200},
        {"dotPower", "float", R"({"dotPower": 77})", 1, 10},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.uniform);
        build(std::string("uniform ") + c.type + " " + c.uniform + ";",
              std::string("float(") + c.uniform + ") * " + std::to_string(c.scale));
        EXPECT_EQ(paint(readTransitionLook("fade", parseJson(c.params))), 77);
        EXPECT_EQ(paint(readTransitionLook("fade", {})), c.byDefault);
        EXPECT_EQ(paint(readTransitionLook("fade", parseJson("[7, 7]"))), c.byDefault);
    }
}

TEST_F(TransitionTest, ProgressIsClampedAndPicturesAreInOrder) {
    build("uniform float progress;", "100.0 + progress * 100.0");
    const std::pair<float, int> cases[] = {{-0.2f, 100}, {0.5f, 150}, {1, 200}, {1.7f, 200}};
    for (const auto& [progress, wanted] : cases) EXPECT_EQ(paint({}, progress), wanted) << progress;

    build("uniform vec2 screenSize;", "screenSize.x * 10.0 + screenSize.y");
    EXPECT_EQ(paint({}), kWidth * 10 + kHeight);

    const GLuint from = solidTexture({30, 0, 0, 255}), to = solidTexture({70, 0, 0, 255});
    build("uniform sampler2D texA, texB;", "(texture(texA, vec2(0.5)).r + texture(texB, vec2(0.5)).r * 2.0) * 255.0");
    glEnable(GL_BLEND);
    EXPECT_EQ(paint({}, 0.5f, from, to), 170);
    EXPECT_FALSE(glIsEnabled(GL_BLEND));
}

TEST_F(TransitionTest, SaysWhyThereIsNone) {
    const std::string missing = "[TRANS] shader sources not found in DemoSceneResources/assets/shaders/transition or "
                                "assets/shaders/transition\n";
    const auto init = [&] {
        LogCapture log;
        EXPECT_FALSE(initTransitionRenderer(renderer, show.baseDir));
        return log.text();
    };
    EXPECT_EQ(init(), missing);
    // The first root has only half of the pair, the second an empty file.
    show.write("DemoSceneResources/assets/shaders/transition/Transition.frag", "void main() {}");
    show.write("assets/shaders/transition/Transition.vert", kQuadVertexSource);
    show.write("assets/shaders/transition/Transition.frag", "");
    EXPECT_EQ(init(), missing);
    show.write("assets/shaders/transition/Transition.frag", "no shader");
    const std::string text = init();
    EXPECT_TRUE(text.starts_with("[SHADER ERROR] transition:\n")) << text;
    EXPECT_TRUE(text.ends_with("[TRANS] shader compile/link failed; transitions will cut.\n")) << text;
}

} // namespace
