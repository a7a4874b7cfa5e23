#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include "effects/composite.h"
#include "effects/pip_effect.h"
#include "effects/split_effect.h"
#include "effects/warm_up.h"

namespace {

class CompositeTest : public EffectFixture {
protected:
    void SetUp() override {
        EffectFixture::SetUp();
        // A colour of the params; time and frame; the picture on channel 0, its channels turned round.
        writeShader("paint", "uniform vec4 colour = vec4(1); void main() { c = colour; }");
        writeShader("clock", "uniform float iTime; uniform int iFrame;"
                             "void main() { c = vec4(iTime / 10.0, float(iFrame) / 255.0, 0, 1); }");
        writeShader("turn", "uniform sampler2D iChannel0; uniform vec2 iChannelResolution[1];"
                            "void main() { c = vec4(texture(iChannel0, vec2(0.5)).gbr, iChannelResolution[0].x / 255.0); }");
        show.write("assets/shaders/transition/Transition.vert", kQuadVertexSource);
        show.write("assets/shaders/transition/Transition.frag",
                   "#version 330 core\nout vec4 c; uniform sampler2D texA, texB; uniform float progress; uniform int effectId;"
                   "void main() { c = mix(texture(texA, vec2(0.5)), texture(texB, vec2(0.5)), progress); c.b = float(effectId) / 255.0; }");
        show.write("assets/shaders/composition/DynamicSplit.vert", kQuadVertexSource);
        show.write("assets/shaders/composition/DynamicSplit.frag",
                   "#version 330 core\nin vec2 vUV; out vec4 c; uniform sampler2D uTexA, uTexB; uniform float uPosition, uAlpha;"
                   "void main() { c = vUV.x < uPosition ? texture(uTexA, vUV) : texture(uTexB, vUV); c.a *= uAlpha; }");
    }

    // The effect at a time of its own clock, in its frame.
    Pixel drawAt(Effect& effect, float t, int frame = 0, int x = 0, int y = 0) {
        clear(0, 0, 0, 1);
        effect.localTime = t;
        effect.frameCounter = frame;
        glDisable(GL_BLEND);
        drawEffectPasses(effect, kWidth, kHeight, nullptr);
        return pixel(x, y);
    }

    // GL objects that are alive; programs of the pool are not the effects'.
    int countObjects() {
        using IsObject = GLboolean (*)(GLuint);
        gl.UseProgram(0); // a program in use outlives its deletion
        deletePooledPrograms();
        const GlLookup lookup = glLookup(surface());
        const IsObject questions[] = {reinterpret_cast<IsObject>(&glIsTexture),
                                      reinterpret_cast<IsObject>(lookup("glIsFramebuffer")),
                                      reinterpret_cast<IsObject>(lookup("glIsProgram")),
                                      reinterpret_cast<IsObject>(lookup("glIsShader"))};
        int count = 0;
        for (const IsObject isObject : questions) {
            for (GLuint id = 1; id < 2000; ++id) count += isObject(id);
        }
        return count;
    }
};

constexpr const char* kRed = R"({"type": "paint", "params": {"colour": [1, 0, 0, 1]}})";
constexpr const char* kGreen = R"({"type": "paint", "params": {"colour": [0, 1, 0, 1]}})";
constexpr const char* kClock = R"({"type": "clock", "params": {"timeScale": 2}})";

std::string composite(const std::string& type, const std::string& params) {
    return "{\"id\": \"top\", \"type\": \"" + type + "\", \"params\": {" + params + "}}";
}

// Its two children under their names, and what else the params hold.
std::string pair(const char* type, const std::string& a, const std::string& b, const std::string& more = "") {
    const bool named = std::string(type) == "dynamicsplit", chain = std::string(type) == "chain";
    const std::string first = named ? "\"a\": " : "\"source\": ";
    const std::string second = named ? "\"b\": " : chain ? "\"postProcess\": " : "\"target\": ";
    return composite(type, first + a + ", " + second + b + more);
}

TEST_F(CompositeTest, FailuresAreSaidAndLeaveNothingBehind) {
    const std::string red = kRed, none = R"({"type": "nowhere"})";
    const std::string noFrag = "    [WARN] Vert not found: (none) (using default)\n    [ERROR] Frag not found: (none)\n";
    const std::string require = "    [ERROR] Blend requires params.source and params.target\n";
    const struct {
        std::string json;
        bool runs;
        std::string log;
    } cases[] = {
        {R"({"type": "Blend"})", false, require},
        {pair("blend", red, "7"), false, require},
        {pair("blend", red, none), false, noFrag + "    [ERROR] Blend child failed: source=paint target=nowhere\n"},
        {composite("timeline_blend", "\"steps\": {}"), false, "    [ERROR] TimelineBlend requires params.steps\n"},
        {composite("timeline_blend", "\"steps\": [1, {\"effect\": " + none + "}]"), false,
         "    [WARN] TimelineBlend step 0 missing effect object\n" + noFrag +
             "    [WARN] TimelineBlend step 1 failed: type=nowhere\n    [ERROR] TimelineBlend has no runnable steps\n"},
        {composite("timeline_blend", "\"steps\": [1, {\"effect\": " + red + "}]"), true,
         "    [WARN] TimelineBlend step 0 missing effect object\n"},
        {composite("chain", "\"source\": " + red), false,
         "    [ERROR] Chain requires params.source and params.postProcess\n"},
        {pair("chain", none, red), false, noFrag + "    [ERROR] Chain child failed: source=nowhere post=paint\n"},
        {pair("dynamicsplit", red, none), false, noFrag + "    [ERROR] DynamicSplit child failed: a=paint b=nowhere\n"},
        {R"({"type": "dynamicsplit"})", true, ""},
        {R"({"type": "pip", "params": [1]})", false, "    [ERROR] PiP requires params object\n"},
        {composite("pip", "\"main\": " + none), false, noFrag + "    [ERROR] PiP main child failed: type=nowhere\n"},
        {composite("PIP", "\"main\": " + red + ", \"pip\": " + none), true,
         noFrag + "    [WARN] PiP child failed: type=nowhere\n"},
        {composite("piptexture", "\"main\": " + red + ", \"image\": \"gone.png\""), true,
         "    [WARN] PiPTexture image not found: " + show.path("gone.png") + "\n"},
    };
    bindBlackTextures(); // the texture cache's own
    const int before = countObjects();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.json);
        LogCapture log;
        Effect effect = createEffect(parse(c.json));
        EXPECT_EQ(isRunnable(effect), c.runs);
        EXPECT_EQ(log.text(), c.log);
        warmUpEffect(effect, DrawState::alpha, DrawTarget::screen, kWidth, kHeight);
        drawAt(effect, 0.5f);
        releaseEffect(effect);
        EXPECT_EQ(countObjects(), before);
    }
    // Without its shader a blend cannot run; the start-up has said so already.
    std::filesystem::remove(show.path("assets/shaders/transition/Transition.frag"));
    LogCapture log;
    Effect effect = createEffect(parse(pair("blend", kRed, kGreen)));
    EXPECT_FALSE(isRunnable(effect));
    EXPECT_EQ(log.text(), "");
}

TEST_F(CompositeTest, NestingStopsAtItsLimit) {
    for (const int levels : {kMaxNesting, kMaxNesting + 1, 200}) {
        SCOPED_TRACE(levels);
        std::string json = kRed;
        for (int i = 0; i < levels; ++i) json = pair("chain", json, R"({"type": "turn"})");
        LogCapture log;
        Effect effect = createEffect(parse(json));
        EXPECT_EQ(isRunnable(effect), levels <= kMaxNesting);
        EXPECT_EQ(log.text().find("is nested deeper than 16 effects and left out\n") != std::string::npos,
                  levels > kMaxNesting);
        drawAt(effect, 0.0f);
        releaseEffect(effect);
    }
}

TEST_F(CompositeTest, BlendMixesWithinItsWindow) {
    const char* window = R"(, "mixMode": "Dots", "startTime": 1, "blendDuration": 2)";
    Effect effect = createEffect(parse(pair("blend", kRed, kGreen, window)));
    const std::pair<float, Pixel> cases[] = {
        {0.0f, {255, 0, 14, 255}}, {1.0f, {255, 0, 14, 255}}, {1.5f, {191, 64, 14, 255}},
        {2.0f, {128, 128, 14, 255}}, {3.0f, {0, 255, 14, 255}}, {9.0f, {0, 255, 14, 255}},
    };
    for (const auto& [t, wanted] : cases) EXPECT_PIXEL(drawAt(effect, t), wanted);
    releaseEffect(effect);

    const struct { const char* params; float start, duration; } blocks[] = {
        {"", 0, 5}, {", \"startTime\": 4.995", 4.995f, 0.01f}, {", \"startTime\": -2", 0, 5},
        {", \"blendDuration\": 0", 0, 0.01f}, {", \"startTime\": 2", 2, 3}, {", \"blendDuration\": 1e999", 0, 5},
    };
    for (const auto& c : blocks) {
        SCOPED_TRACE(c.params);
        effect = createEffect(parse(pair("blend", kRed, kGreen, c.params)));
        EXPECT_FLOAT_EQ(effect.blend.startTime, c.start);
        EXPECT_FLOAT_EQ(effect.blend.blendDuration, c.duration);
        releaseEffect(effect);
    }
}

TEST_F(CompositeTest, ChildrenRunOnTheirParentsClock) {
    // Time 1.5 s at twice the speed in frame 51: 3 s. The post child of a chain gets time and picture, also through
    // a composite in between.
    const std::string clock = kClock, turn = R"({"type": "turn"})", pip = composite("pip", "\"main\": " + clock);
    const std::pair<std::string, Pixel> cases[] = {
        {pip, {77, 51, 0, 255}},
        {composite("pip", "\"main\": " + pip), {77, 51, 0, 255}},
        {pair("dynamicsplit", clock, clock), {77, 51, 0, 255}},
        {composite("dynamicsplit", "\"source\": " + clock + ", \"target\": " + clock), {77, 51, 0, 255}},
        {composite("timeline_blend", "\"steps\": [{\"duration\": 9, \"effect\": " + clock + "}]"), {77, 51, 0, 255}},
        {composite("timeline_blend", R"("steps": [{"start": 1, "duration": 8, "effect": {"type": "clock"}}])"),
         {13, 51, 0, 255}}, // from the step's start
        {pair("blend", clock, clock), {77, 51, 0, 255}},
        {pair("chain", clock, turn), {51, 0, 77, kWidth}},
        {pair("chain", clock, composite("pip", "\"main\": " + turn)), {51, 0, 77, kWidth}},
    };
    for (const auto& [json, wanted] : cases) {
        SCOPED_TRACE(json);
        Effect effect = createEffect(parse(json));
        EXPECT_PIXEL(drawAt(effect, 1.5f, 51), wanted);
        releaseEffect(effect);
    }
}

TEST_F(CompositeTest, TimelineBlendWrapsAndOverlaps) {
    Effect effect = createEffect(parse(composite("timeline_blend", std::string("\"alpha\": 0.4, \"steps\": [")
        + "{\"start\": 2, \"startTime\": 7, \"duration\": 3, \"effect\": " + kGreen + "},"
        + "{\"startTime\": 0, \"duration\": 3, \"effect\": " + kRed + "}]")));
    const std::pair<float, Pixel> cases[] = {
        {0.5f, {255, 0, 0, 102}}, {2.5f, {128, 128, 0, 255}}, {4.0f, {0, 255, 0, 102}}, {12.5f, {128, 128, 0, 255}},
        {5.5f, {255, 0, 0, 102}}, {-3.0f, {255, 0, 0, 102}}, // wrapped at 5
    };
    for (const auto& [t, wanted] : cases) EXPECT_PIXEL(drawAt(effect, t), wanted);
    effect.loopSteps = false;
    EXPECT_PIXEL(drawAt(effect, 5.5f), Pixel{0, 0, 0, 0});
    EXPECT_PIXEL(drawAt(effect, 5.0f), Pixel{0, 255, 0, 102}); // both ends count
    releaseEffect(effect);
}

TEST_F(CompositeTest, SplitReadsModesAndClamps) {
    const std::pair<const char*, int> modes[] = {
        {"vertical", 0}, {"horizon_tal", 1}, {"DIA-GONAL", 2}, {"wavy", 3}, {"ondulada", 3}, {"Wave-Form", 0}, {"", 0},
    };
    for (const auto& [name, code] : modes) EXPECT_EQ(splitModeCode(name), code) << name;
    const SplitBlock low = readSplit(parseJson(R"({"position": -1, "feather": 0, "waveFrequency": 0, "angle": 90})"));
    EXPECT_FLOAT_EQ(low.position, 0.0f);
    EXPECT_FLOAT_EQ(low.feather, 0.0001f);
    EXPECT_FLOAT_EQ(low.waveFrequency, 0.1f);
    EXPECT_FLOAT_EQ(low.angle, 1.5707964f);

    // Child a left, b right, over what lies below by the alpha of the composite.
    Effect effect = createEffect(parse(pair("dynamicsplit", kRed, kGreen, ", \"alpha\": 0.4")));
    EXPECT_PIXEL(drawAt(effect, 0.0f, 0, 0), Pixel{102, 0, 0, 194});
    EXPECT_PIXEL(pixel(kWidth - 1, 0), Pixel{0, 102, 0, 194});
    releaseEffect(effect);
}

TEST_F(CompositeTest, InsetsStayInTheirCorner) {
    const struct {
        const char* params;
        PipRect wanted; // in an output of 200 x 100
    } cases[] = {
        {"{}", {134, 16, 50, 25}},
        {R"({"corner": "Top-Left"})", {16, 59, 50, 25}},
        {R"({"corner": "TOP_RIGHT", "pipMargin": 0.5})", {150, 75, 50, 25}},
        {R"({"corner": "bottomleft", "pipMargin": -9})", {0, 0, 50, 25}},
        {R"({"corner": "middle", "pipScale": 0.01})", {174, 16, 10, 5}},
        {R"({"pipScale": 7})", {0, 0, 200, 100}},
        {R"({"pipMargin": 2147483647, "corner": "topleft"})", {150, 0, 50, 25}},
    };
    for (const auto& c : cases) {
        const PipRect rect = pipRect(readPip(parseJson(c.params)), 200, 100);
        EXPECT_TRUE(rect.x == c.wanted.x && rect.y == c.wanted.y && rect.width == c.wanted.width
                    && rect.height == c.wanted.height) << c.params;
    }

    // The inset waits, fades in, and keeps the picture around it.
    writePicture("blue.png", {0, 0, 255, 255});
    const std::string place = R"(, "pipScale": 0.5, "pipMargin": 0, "pipDelay": 1, "pipFadeIn": 1, "pipAlpha": 0.8)";
    const std::string main = std::string("\"main\": ") + kRed + place;
    LogCapture quiet;
    for (const std::string& json : {
             composite("pip", main + R"(, "pip": {"type": "paint", "params": {"colour": [0, 0, 1, 1]}})"),
             composite("piptexture", main + R"(, "image": "blue.png")")}) {
        SCOPED_TRACE(json);
        Effect effect = createEffect(parse(json));
        const struct { float t; int red, blue; } times[] = {{0.9f, 255, 0}, {1.5f, 153, 102}, {3.0f, 51, 204}};
        for (const auto& c : times) {
            const Pixel inset = drawAt(effect, c.t, 0, kWidth - 1, 0);
            EXPECT_NEAR(inset[0], c.red, 1) << c.t;
            EXPECT_NEAR(inset[2], c.blue, 1) << c.t;
            EXPECT_PIXEL(pixel(0, kHeight - 1), Pixel{255, 0, 0, 255});
        }
        releaseEffect(effect);
    }
}

TEST_F(CompositeTest, CallersBlendingSurvivesNestedComposites) {
    // An additive overlay whose innermost child is a split, which sets blending of its own.
    const std::string dark = R"({"type": "paint", "params": {"colour": [0.4, 0, 0, 1]}})";
    Effect effect = createEffect(parse(composite("pip", "\"main\": " + pair("dynamicsplit", dark, dark))));
    clear(0, 0.2f, 0, 1);
    applyDrawState(DrawState::additive);
    drawEffectPasses(effect, kWidth, kHeight, nullptr);
    EXPECT_PIXEL(pixel(0, kHeight - 1), Pixel{102, 51, 0, 255});
    glDisable(GL_BLEND);
    releaseEffect(effect);
}

} // namespace
