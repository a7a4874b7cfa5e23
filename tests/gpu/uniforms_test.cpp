#include "support/gl_test.h"

#include "gpu/uniform_values.h"

#include <cmath>

namespace {

// Every value is read back as a pixel: the shader paints what it received.
class UniformsTest : public GlTest {
protected:
    void TearDown() override {
        deleteProgram(program);
        GlTest::TearDown();
    }

    // Links a shader that paints `expression` (a vec4 in 0..1) and puts it in use.
    void use(const std::string& declarations, const std::string& expression) {
        deleteProgram(program);
        program = link(declarations + "out vec4 colour; void main() { colour = " + expression + "; }");
        ASSERT_NE(program.handle, 0u);
        gl.UseProgram(program.handle);
    }

    Pixel paint() {
        drawQuad(device.quad);
        return pixel();
    }

    Program program;
};

TEST_F(UniformsTest, ConvertsToTheDeclaredType) {
    const char* const asFloat = "vec4(float(u) / 10.0, 0, 0, 1)";
    const auto setFloat = [](const UniformInfo& u) { setUniformFloat(u, 2.5f); };
    const auto setInt = [](const UniformInfo& u) { setUniformInt(u, 3); };
    const auto setVec2 = [](const UniformInfo& u) { setUniformVec2(u, 0.2f, 0.4f); };
    const auto setVec3 = [](const UniformInfo& u) { setUniformVec3(u, 0.2f, 0.4f, 0.6f); };
    const auto setVec4 = [](const UniformInfo& u) { setUniformVec4(u, 0.2f, 0.4f, 0.6f, 0.8f); };
    const struct {
        const char* type;
        const char* expression;
        void (*set)(const UniformInfo& uniform);
        Pixel wanted;
    } cases[] = {
        {"float", asFloat, setFloat, {64, 0, 0, 255}},
        {"int", asFloat, setFloat, {77, 0, 0, 255}}, // 2.5 rounds away from zero
        {"bool", asFloat, setFloat, {26, 0, 0, 255}},
        {"float", asFloat, setInt, {77, 0, 0, 255}},
        {"uint", asFloat, setInt, {0, 0, 0, 255}}, // no type of the setters
        {"vec4", "u", setVec2, {51, 102, 0, 255}}, // what is missing: 0, alpha 1
        {"vec4", "u", setVec3, {51, 102, 153, 255}},
        {"vec2", "vec4(u, 0, 1)", setVec4, {51, 102, 0, 255}},
        {"vec3", "vec4(u, 1)", setVec4, {51, 102, 153, 255}},
        {"vec4", "u", setVec4, {51, 102, 153, 204}},
        {"float", asFloat, setVec3, {0, 0, 0, 255}},
        {"vec3", "vec4(u, 1)", setFloat, {0, 0, 0, 255}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.type << testing::PrintToString(c.wanted));
        use(std::string("uniform ") + c.type + " u; ", c.expression);
        c.set(uniformNamed(program.uniforms, "u"));
        EXPECT_PIXEL(paint(), c.wanted);
    }

    // Huge times do not overflow integers.
    use("uniform int u; ", "vec4(u > 2000000000 ? 1 : 0, u < -2000000000 ? 1 : 0, u == 0 ? 1 : 0, 1)");
    const std::pair<float, Pixel> huge[] = {
        {1e30f, {255, 0, 0, 255}}, {-1e30f, {0, 255, 0, 255}}, {std::nanf(""), {0, 0, 255, 255}}};
    for (const auto& [value, wanted] : huge) {
        setUniformFloat(uniformNamed(program.uniforms, "u"), value);
        EXPECT_PIXEL(paint(), wanted);
    }
}

TEST_F(UniformsTest, StandardUniformsReachBothFamilies) {
    use("uniform float iTime, uTime, uAlpha; uniform int iFrame; uniform vec2 iResolution; uniform vec3 uResolution;"
        "uniform vec4 iMouse;",
        "gl_FragCoord.x < 1.0 ? vec4(iTime / 10.0, uTime / 10.0, float(iFrame) / 255.0, uAlpha)"
        " : iMouse + vec4(iResolution, uResolution.y, uResolution.z - 1.0) / 255.0");
    setStandardUniforms(program.uniforms, 2.4f, 51, 0.4f, 100, 200);
    EXPECT_PIXEL(paint(), Pixel{61, 61, 51, 102});
    EXPECT_PIXEL(pixel(1, 0), Pixel{100, 200, 200, 255});
}

TEST_F(UniformsTest, ChannelsAreBoundUnderEveryName) {
    const Pixel red = {255, 0, 0, 255}, green = {0, 255, 0, 255}, blue = {0, 0, 255, 255};
    Channels channels;
    channels[0].texture = solidTexture({255, 0, 0, 255});
    channels[1].texture = solidTexture({0, 255, 0, 255});
    // An input texture replaces its channel, whose number is clamped.
    const GLuint input = solidTexture({0, 0, 255, 255});
    const struct {
        std::string name;
        bool isChannel0;
        Pixel wanted;
        InputTexture input = {};
    } cases[] = {
        {"iChannel0", true, red},
        {"uTex", true, red},
        {"uTexture", true, red},
        {"uBackground", true, red},
        {"uTexA", true, red},
        {"uInputTex", true, red},
        {"iChannel1", false, green},
        {"uTexB", false, green},
        {"iChannel0", true, blue, {input, 1, 1, -2}},
        {"iChannel3", false, blue, {input, 1, 1, 7}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        use("uniform sampler2D " + c.name + ";", "texture(" + c.name + ", vec2(0.5))");
        EXPECT_EQ(samplesChannel0(program.uniforms), c.isChannel0);
        bindChannels(program.uniforms, channels, 8, 4, &c.input);
        EXPECT_PIXEL(paint(), c.wanted);
    }
}

TEST_F(UniformsTest, ChannelResolutionsFollowTextureInputAndDefault) {
    Channels channels;
    channels[1] = {solidTexture({0, 0, 0, 255}), 10, 20, ""};
    const InputTexture input = {solidTexture({0, 0, 0, 255}), 30, 0, 2};
    use("uniform vec2 iChannelResolution[4];", "vec4(iChannelResolution[1], iChannelResolution[2]) / 255.0");
    bindChannels(program.uniforms, channels, 100, 200, &input);
    EXPECT_PIXEL(paint(), Pixel{10, 20, 30, 200});
    // A shorter array has no elements for the later channels; one of vec3 must leave no error behind
    // (the fixture looks).
    use("uniform vec2 iChannelResolution[2];", "vec4(iChannelResolution[0], iChannelResolution[1]) / 255.0");
    bindChannels(program.uniforms, channels, 100, 200, nullptr);
    EXPECT_PIXEL(paint(), Pixel{100, 200, 10, 20});
    use("uniform vec3 iChannelResolution[4];", "vec4(iChannelResolution[1] + iChannelResolution[3], 1)");
    bindChannels(program.uniforms, channels, 100, 200, nullptr);
}

// Two effects with one program: each finds its own values, and what it does not set as the shader has it.
TEST_F(UniformsTest, ValuesBelongToWhoeverDraws) {
    ProgramTable& table = device.programs;
    const std::string source =
        "#version 330 core\nuniform float uSpeed = 0.2; uniform vec3 tint; uniform int steps = 51;"
        "out vec4 c; void main() { c = vec4(uSpeed, tint.y, float(steps) / 255.0, 1); }";
    Program* shared = findProgram(table, {kQuadVertexSource, source}, "shared");
    ASSERT_TRUE(shared);
    EXPECT_EQ(findProgram(table, {kQuadVertexSource, source}, "again"), shared);
    UniformValues plain = makeUniformValues(table, *shared), own = plain;
    own.writer = makeUniformValues(table, *shared).writer;
    const float speed = 0.4f, tint[] = {0.0f, 0.6f, 0.0f}, steps = 102.0f;
    setUniformValue(own, *shared, "uSpeed", &speed, 1);
    setUniformValue(own, *shared, "tint", &speed, 1); // no vector: nothing
    setUniformValue(own, *shared, "tint", tint, 3);
    setUniformValue(own, *shared, "steps", &steps, 1);
    for (int turn = 0; turn < 2; ++turn) {
        useProgram(*shared, own);
        EXPECT_PIXEL(paint(), Pixel{102, 153, 102, 255});
        useProgram(*shared, plain);
        EXPECT_PIXEL(paint(), Pixel{51, 0, 51, 255});
    }
}

} // namespace
