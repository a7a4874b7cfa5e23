#include "support/gl_test.h"

#include "gpu/uniforms.h"

#include <cstring>

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
        ASSERT_NE(program, 0u);
        gl.UseProgram(program);
    }

    Pixel paint() {
        drawQuad();
        return pixel();
    }

    GLuint program = 0;
};

TEST_F(UniformsTest, ConvertsToTheDeclaredType) {
    const auto setFloat = [](GLuint p) { setUniformFloat(p, "u", 2.5f); };
    const auto setInt = [](GLuint p) { setUniformInt(p, "u", 3); };
    const auto setVec2 = [](GLuint p) { setUniformVec2(p, "u", 0.2f, 0.4f); };
    const auto setVec3 = [](GLuint p) { setUniformVec3(p, "u", 0.2f, 0.4f, 0.6f); };
    const auto setVec4 = [](GLuint p) { setUniformVec4(p, "u", 0.2f, 0.4f, 0.6f, 0.8f); };
    const struct {
        const char* type;
        const char* expression; // of the value, in 0..1 a component
        void (*set)(GLuint program);
        Pixel wanted;
    } cases[] = {
        {"float", "vec4(u / 10.0, 0, 0, 1)", setFloat, {64, 0, 0, 255}},
        {"int", "vec4(float(u) / 5.0, 0, 0, 1)", setFloat, {153, 0, 0, 255}}, // 2.5 rounds away from zero
        {"bool", "vec4(u ? 1.0 : 0.0, 0, 0, 1)", setFloat, {255, 0, 0, 255}},
        {"float", "vec4(u / 10.0, 0, 0, 1)", setInt, {77, 0, 0, 255}},
        {"int", "vec4(float(u) / 5.0, 0, 0, 1)", setInt, {153, 0, 0, 255}},
        {"uint", "vec4(float(u) / 5.0, 0, 0, 1)", setInt, {0, 0, 0, 255}}, // no type of the setters
        {"vec3", "vec4(u, 1)", setVec2, {51, 102, 0, 255}}, // what is missing: 0, alpha 1
        {"vec4", "u", setVec2, {51, 102, 0, 255}},
        {"vec2", "vec4(u, 0, 1)", setVec3, {51, 102, 0, 255}},
        {"vec3", "vec4(u, 1)", setVec3, {51, 102, 153, 255}},
        {"vec4", "u", setVec3, {51, 102, 153, 255}},
        {"vec2", "vec4(u, 0, 1)", setVec4, {51, 102, 0, 255}},
        {"vec3", "vec4(u, 1)", setVec4, {51, 102, 153, 255}},
        {"vec4", "u", setVec4, {51, 102, 153, 204}},
        {"float", "vec4(u, 0, 0, 1)", setVec3, {0, 0, 0, 255}},
        {"vec3", "vec4(u, 1)", setFloat, {0, 0, 0, 255}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.type << testing::PrintToString(c.wanted));
        use(std::string("uniform ") + c.type + " u; ", c.expression);
        c.set(program);
        EXPECT_PIXEL(paint(), c.wanted);
    }

    // Huge times do not overflow integers.
    use("uniform int u; ", "vec4(u > 2000000000 ? 1.0 : 0.0, u < -2000000000 ? 1.0 : 0.0, u == 0 ? 1.0 : 0.0, 1)");
    setUniformFloat(program, "u", 1e30f);
    EXPECT_PIXEL(paint(), Pixel{255, 0, 0, 255});
    setUniformFloat(program, "u", -1e30f);
    EXPECT_PIXEL(paint(), Pixel{0, 255, 0, 255});
    setUniformFloat(program, "u", std::strtof("nan", nullptr));
    EXPECT_PIXEL(paint(), Pixel{0, 0, 255, 255});
}

TEST_F(UniformsTest, StandardUniformsReachBothFamilies) {
    // Time 2.4 s, frame 51, alpha 0.4, 100 x 200 pixels.
    const struct { const char* declarations; const char* expression; Pixel wanted; } cases[] = {
        {"uniform float iTime; uniform float uTime;", "vec4(iTime / 10.0, uTime / 10.0, 0, 1)", {61, 61, 0, 255}},
        {"uniform int iTime;", "vec4(float(iTime) / 10.0, 0, 0, 1)", {51, 0, 0, 255}},
        {"uniform vec2 iResolution;", "vec4(iResolution / 255.0, 0, 1)", {100, 200, 0, 255}},
        {"uniform vec3 uResolution;", "vec4(uResolution.xy / 255.0, uResolution.z, 1)", {100, 200, 255, 255}},
        {"uniform vec4 iResolution;", "vec4(iResolution.xy / 255.0, iResolution.zw)", {100, 200, 255, 255}},
        {"uniform int iFrame;", "vec4(float(iFrame) / 255.0)", {51, 51, 51, 51}},
        {"uniform float iFrame;", "vec4(iFrame / 255.0)", {51, 51, 51, 51}},
        {"uniform float uAlpha;", "vec4(uAlpha)", {102, 102, 102, 102}},
        {"uniform vec4 iMouse;", "iMouse", {0, 0, 0, 255}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.declarations);
        use(c.declarations, c.expression);
        setStandardUniforms(program, 2.4f, 51, 0.4f, 100, 200);
        EXPECT_PIXEL(paint(), c.wanted);
    }
}

TEST_F(UniformsTest, ChannelsAreBoundUnderEveryName) {
    const GLuint red = solidTexture({255, 0, 0, 255});
    Channels channels;
    channels[0].texture = red;
    channels[1].texture = solidTexture({0, 255, 0, 255});
    const auto expectSampled = [&](const char* name, const InputTexture* input, Pixel wanted) {
        SCOPED_TRACE(name);
        use(std::string("uniform sampler2D ") + name + ";", std::string("texture(") + name + ", vec2(0.5))");
        EXPECT_EQ(samplesChannel0(program), !std::strpbrk(name, "1B3"));
        bindChannels(program, channels, 8, 4, input);
        EXPECT_PIXEL(paint(), wanted);
    };
    for (const char* name : {"iChannel0", "uTex", "uTexture", "uBackground", "uTexA", "uInputTex"}) {
        expectSampled(name, nullptr, {255, 0, 0, 255});
    }
    for (const char* name : {"iChannel1", "uTexB"}) expectSampled(name, nullptr, {0, 255, 0, 255});
    // An input texture replaces its channel, whose number is clamped.
    const std::pair<int, const char*> inputs[] = {{-2, "iChannel0"}, {0, "iChannel0"}, {7, "iChannel3"}};
    for (const auto& [channel, name] : inputs) {
        const InputTexture input = {solidTexture({0, 0, 255, 255}), 1, 1, channel};
        expectSampled(name, &input, {0, 0, 255, 255});
    }

    // Texture 0 leaves unit and sampler alone.
    use("uniform sampler2D iChannel0;", "texture(iChannel0, vec2(0.5))");
    bindChannel(program, 0, red);
    bindChannel(program, 0, 0);
    EXPECT_PIXEL(paint(), Pixel{255, 0, 0, 255});
}

TEST_F(UniformsTest, ChannelResolutionsFollowTextureInputAndDefault) {
    Channels channels;
    channels[1] = {solidTexture({0, 0, 0, 255}), 10, 20, ""};
    const InputTexture input = {solidTexture({0, 0, 0, 255}), 30, 0, 2};
    use("uniform vec2 iChannelResolution[4]; uniform int index; ", "vec4(iChannelResolution[index] / 255.0, 0, 1)");
    bindChannels(program, channels, 100, 200, &input);
    const Pixel wanted[] = {{100, 200, 0, 255}, {10, 20, 0, 255}, {30, 200, 0, 255}, {100, 200, 0, 255}};
    for (int i = 0; i < kChannelCount; ++i) {
        setUniformInt(program, "index", i);
        EXPECT_PIXEL(paint(), wanted[i]);
    }

    // A shorter array has no elements for the later channels; one of vec3 must leave no error behind
    // (the fixture looks).
    use("uniform vec2 iChannelResolution[2];", "vec4(iChannelResolution[0] / 255.0, iChannelResolution[1] / 255.0)");
    bindChannels(program, channels, 100, 200, nullptr);
    EXPECT_PIXEL(paint(), Pixel{100, 200, 10, 20});
    use("uniform vec3 iChannelResolution[4];", "vec4(iChannelResolution[1] + iChannelResolution[3], 1)");
    bindChannels(program, channels, 100, 200, nullptr);
}

} // namespace
