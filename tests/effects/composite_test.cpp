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
        writeCommonShaders();
        // The picture on channel 0, its channels turned round, and its width.
        writeShader("turn", "uniform sampler2D iChannel0; uniform vec2 iChannelResolution[1]; void main() {"
                            "c = vec4(texture(iChannel0, vec2(0.5)).gbr, iChannelResolution[0].x / 255.0); }");
        writeShader("composition",
                    "in vec2 vUV; uniform sampler2D uTexA, uTexB; uniform float uPosition, uAlpha;"
                    "void main() { c = texture(uTexA, vUV); if (vUV.x > uPosition) c = texture(uTexB, vUV);"
                    "c.a *= uAlpha; }",
                    "DynamicSplit");
    }

    // The test's effect at a time of its own clock, in its frame.
    Pixel drawAt(float t, int frame = 0) {
        clear(0, 0, 0, 1);
        now.time = static_cast<double>(t);
        now.frame = frame;
        return draw(effect);
    }

    // GL objects that are alive; programs are the device's.
    int countObjects() {
        using IsObject = GLboolean (*)(GLuint);
        gl.UseProgram(0); // a program in use outlives its deletion
        deletePrograms(device.programs);
        int count = 0;
        for (GLuint id = 1; id < 2000; ++id) count += glIsTexture(id); // of GL 1.1, which look-ups need not know
        for (const char* name : {"glIsFramebuffer", "glIsProgram", "glIsShader"}) {
            const auto isObject = reinterpret_cast<IsObject>(glLookup(surface())(name));
            for (GLuint id = 1; id < 2000; ++id) count += isObject(id);
        }
        return count;
    }
};

constexpr const char* kRed = R"({"type": "paint", "params": {"colour": [1, 0, 0, 1]}})";
constexpr const char* kGreen = R"({"type": "paint", "params": {"colour": [0, 1, 0, 1]}})";
constexpr const char* kClock = R"({"type": "clock", "params": {"timeScale": 2}})";
constexpr const char* kTurn = R"({"type": "turn"})";

std::string composite(const std::string& type, const std::string& params) {
    return "{\"id\": \"top\", \"type\": \"" + type + "\", \"params\": {" + params + "}}";
}

// With two children under the names that the type gives them, and what else the params hold.
std::string pair(const std::string& type, const std::string& a, const std::string& b, const std::string& more = "") {
    const bool isSplit = type == "dynamicsplit", isChain = type == "chain";
    const std::string first = isSplit ? "a" : "source", second = isSplit ? "b" : isChain ? "postProcess" : "target";
    return composite(type, "\"" + first + "\": " + a + ", \"" + second + "\": " + b + more);
}

std::string pip(const std::string& main, const std::string& more = "") {
    return composite("pip", "\"main\": " + main + more);
}

TEST_F(CompositeTest, FailuresAreSaidAndLeaveNothingBehind) {
    const std::string red = kRed, none = R"({"type": "nowhere"})";
    const struct {
        std::string json, ending;
        bool runs = false;
    } cases[] = {
        // of the log
        {pair("Blend", red, "7"), "    [ERROR] Blend requires params.source and params.target\n"},
        {pair("blend", red, none), "    [ERROR] Blend child failed: source=paint target=nowhere\n"},
        {composite("timeline_blend", "\"steps\": [1, {\"effect\": " + none + "}]"),
         "    [WARN] TimelineBlend step 1 failed: type=nowhere\n    [ERROR] TimelineBlend has no runnable steps\n"},
        {composite("timeline_blend", "\"steps\": [1, {\"effect\": " + red + "}]"),
         "    [WARN] TimelineBlend step 0 missing effect object\n", true},
        {pair("chain", red, "7"), "    [ERROR] Chain requires params.source and params.postProcess\n"},
        {pair("chain", none, red), "    [ERROR] Chain child failed: source=nowhere post=paint\n"},
        {pair("dynamicsplit", red, none), "    [ERROR] DynamicSplit child failed: a=paint b=nowhere\n"},
        {R"({"type": "dynamicsplit"})", "", true}, // two pictures that are missing
        {R"({"type": "pip", "params": [1]})", "    [ERROR] PiP requires params object\n"},
        {pip(none), "    [ERROR] PiP main child failed: type=nowhere\n"},
        {pip(red, ", \"pip\": " + none), "    [WARN] PiP child failed: type=nowhere\n", true},
        {composite("piptexture", "\"main\": " + red + ", \"image\": \"gone.png\""),
         "    [WARN] PiPTexture image not found: " + show.path("gone.png") + "\n", true},
    };
    resetTextureUnits(device.textures); // the texture cache's own
    const int before = countObjects();
    for (const auto& c : cases) {
        SCOPED_TRACE(c.json);
        const LogCapture log;
        EXPECT_EQ(isRunnable(use(c.json)), c.runs);
        EXPECT_TRUE(log.text().ends_with(c.ending)) << log.text();
        warmUpEffect(device, effect, DrawTarget::screen, screenDraw(BlendMode::alpha));
        drawAt(0.5f);
        releaseEffect(effect);
        EXPECT_EQ(countObjects(), before);
    }
}

TEST_F(CompositeTest, NestingStopsAtItsLimit) {
    for (const int levels : {kMaxNesting, kMaxNesting + 1, 200}) {
        std::string json = kRed;
        for (int i = 0; i < levels; ++i) json = pair("chain", json, kTurn);
        const LogCapture log;
        EXPECT_EQ(isRunnable(use(json)), levels == kMaxNesting);
        const bool isSaid = log.text().find("is nested deeper than 16 effects and left out\n") != std::string::npos;
        EXPECT_EQ(isSaid, levels > kMaxNesting);
    }
}

TEST_F(CompositeTest, BlendMixesWithinItsWindow) {
    use(pair("blend", kRed, kGreen, R"(, "startTime": 1, "blendDuration": 2, "mixMode": "Dots")"));
    const std::pair<float, Pixel> cases[] = {
        {0.0f, {255, 0, 0, 255}}, {1.5f, {191, 64, 0, 255}}, {2.0f, {128, 128, 0, 255}}, {9.0f, {0, 255, 0, 255}}};
    for (const auto& [t, wanted] : cases) EXPECT_PIXEL(drawAt(t), wanted);
    EXPECT_EQ(effect.mixLook.effectId, 14);

    const std::pair<const char*, float> durations[] = {{", \"startTime\": 2", 3.0f},
                                                       {", \"startTime\": 4.995", 0.01f},
                                                       {", \"blendDuration\": 1e999", 5.0f},
                                                       {", \"blendDuration\": -1e999", 0.01f}};
    for (const auto& [params, duration] : durations) {
        EXPECT_FLOAT_EQ(use(pair("blend", kRed, kGreen, params)).blend.blendDuration, duration) << params;
    }
}

TEST_F(CompositeTest, BlendDrawsTheChildThatTheOtherCovers) {
    // Each frame is a fifth brighter than the one before.
    writeShader("grow", "uniform sampler2D uBufferA; void main() { c = texture(uBufferA, vec2(0.5)); }");
    writeShader("grow", "uniform sampler2D uBufferA; void main() { c = texture(uBufferA, vec2(0.5)) + vec4(0.2); }",
                "growBufferA");
    const std::string grow = R"({"type": "grow"})";
    for (const bool growsFirst : {false, true}) {
        use(growsFirst ? pair("blend", grow, kRed) : pair("blend", kRed, grow));
        for (int frame = 0; frame < 3; ++frame) drawAt(growsFirst ? 9.0f : 0.0f);
        EXPECT_PIXEL(drawAt(growsFirst ? 0.0f : 9.0f), Pixel{204, 204, 204, 204});
    }
}

TEST_F(CompositeTest, CaptionsKnowTheirEntrysLengthOnEveryClockAroundThem) {
    const LogCapture quiet;
    writeShader("Text", "void main() { c = vec4(1); }", "LowerThird");
    writePicture("font.png", {255, 255, 255, 255});
    show.write("font.json", R"({"texture": "font.png", "chars": "W"})");
    const auto caption = [](const char* scale) {
        return std::string(R"({"type": "lowerthird", "params": {"fontPath": "font.json", "timeScale": )") + scale +
               "}}";
    };
    const auto scaled = [](const char* scale) { return std::string(", \"timeScale\": ") + scale; };
    const std::pair<std::string, float> cases[] = {
        // of entries of 5 s; 0: they never end
        {pip(caption("1")), 5.0f},
        {pip(caption("1"), scaled("2")), 10.0f},
        {pair("chain", caption("3"), kRed, scaled("0.5")), 7.5f},
        {pip(pip(caption("1"), scaled("4")), scaled("0.5")), 10.0f},
        {pip(caption("1"), scaled("-1")), 0.0f},
        {pip(caption("1e38"), scaled("1e38")), 0.0f},
    };
    for (const auto& [json, length] : cases) {
        const Effect* innermost = &use(json);
        while (!innermost->children.empty()) innermost = innermost->children[0].get();
        EXPECT_FLOAT_EQ(innermost->caption.duration, length) << json;
    }
}

TEST_F(CompositeTest, ChildrenRunOnTheirParentsClock) {
    // Time 1.5 s at twice the speed in frame 51: 3 s. The post child of a chain gets time and picture, also
    // through a composite in between.
    const std::string clock = kClock;
    const Pixel wanted = {77, 51, 0, 255}, turned = {51, 0, 77, kWidth};
    const std::pair<std::string, Pixel> cases[] = {
        {pip(pip(clock)), wanted},
        {composite("dynamicsplit", "\"source\": " + clock + ", \"b\": " + clock), wanted},
        {composite("timeline_blend", "\"steps\": [{\"start\": 0.5, \"duration\": 8, \"effect\": " + clock + "}]"),
         {51, 51, 0, 255}}, // from the step's start
        {pair("blend", clock, clock), wanted},
        {pair("chain", clock, pip(kTurn)), turned},
        {pair("chain", kRed, clock), wanted},
    };
    for (const auto& [json, pixel] : cases) {
        SCOPED_TRACE(json);
        use(json);
        EXPECT_PIXEL(drawAt(1.5f, 51), pixel);
    }
}

TEST_F(CompositeTest, TimelineBlendWrapsAndOverlaps) {
    use(composite("timeline_blend", std::string("\"alpha\": 0.4, \"steps\": [") +
                                        "{\"start\": 2, \"startTime\": 7, \"duration\": 3, \"effect\": " + kGreen +
                                        "}," + "{\"startTime\": 0, \"duration\": 3, \"effect\": " + kRed + "}]"));
    const Pixel red = {255, 0, 0, 102}, green = {0, 255, 0, 102}, both = {128, 128, 0, 255};
    const std::pair<float, Pixel> cases[] = {// wrapped at 5
                                             {0.5f, red},
                                             {2.5f, both},
                                             {4.0f, green},
                                             {12.5f, both},
                                             {-3.0f, red}};
    for (const auto& [t, wanted] : cases) EXPECT_PIXEL(drawAt(t), wanted);
    effect.loopSteps = false;
    EXPECT_PIXEL(drawAt(5.5f), Pixel{0, 0, 0, 0});
    EXPECT_PIXEL(drawAt(5.0f), green); // both ends count
}

TEST_F(CompositeTest, SplitShowsBothChildren) {
    const std::pair<const char*, int> modes[] = {{"horizon_tal", 1}, {"DIA-GONAL", 2}, {"ondulada", 3}, {"Waves", 0}};
    for (const auto& [name, code] : modes) EXPECT_EQ(splitModeCode(name), code) << name;
    EXPECT_FLOAT_EQ(readSplit(parseJson(R"({"feather": 0})")).feather, 0.0001f);
    // Child a left, b right, over what lies below by the alpha of the composite.
    use(pair("dynamicsplit", kRed, kGreen, ", \"alpha\": 0.4"));
    EXPECT_PIXEL(drawAt(0.0f), Pixel{0, 102, 0, 194});
    EXPECT_PIXEL(pixel(0, 0), Pixel{102, 0, 0, 194});
}

TEST_F(CompositeTest, InsetsStayInTheirCorner) {
    const std::pair<const char*, std::array<int, 4>> cases[] = {
        // x, y, width and height in an output of 200 x 100
        {R"({"corner": "Top-Left"})", {16, 59, 50, 25}},
        {R"({"corner": "TOP_RIGHT", "pipMargin": 0.5})", {150, 75, 50, 25}},
        {R"({"corner": "middle", "pipScale": 0.01})", {174, 16, 10, 5}},
        {R"({"pipMargin": 2147483647, "corner": "topleft"})", {150, 0, 50, 25}},
    };
    for (const auto& [params, wanted] : cases) {
        const PipRect rect = pipRect(readPip(parseJson(params), false), 200, 100);
        EXPECT_EQ((std::array{rect.x, rect.y, rect.width, rect.height}), wanted) << params;
    }

    // The inset waits, fades in, and keeps the picture around it.
    const LogCapture quiet;
    writePicture("green.png", {0, 255, 0, 255});
    const std::string params =
        std::string("\"main\": ") + kRed +
        R"(, "pipScale": 0.5, "pipMargin": 0, "corner": "topright", "pipDelay": 1, "pipFadeIn": 1, "pipAlpha": 0.8)";
    for (const std::string& json : {composite("pip", params + ", \"pip\": " + kGreen),
                                    composite("piptexture", params + R"(, "image": "green.png")")}) {
        SCOPED_TRACE(json);
        use(json);
        const std::pair<float, Pixel> times[] = {
            {0.9f, {255, 0, 0, 255}}, {1.5f, {153, 102, 0, 194}}, {3.0f, {51, 204, 0, 214}}};
        for (const auto& [t, wanted] : times) {
            EXPECT_PIXEL(drawAt(t), wanted);
            EXPECT_PIXEL(pixel(0, 0), Pixel{255, 0, 0, 255});
        }
    }
}

TEST_F(CompositeTest, CallersBlendingSurvivesNestedComposites) {
    // An additive overlay whose innermost child is a split, which sets blending of its own.
    const std::string dark = R"({"type": "paint", "params": {"colour": [0.4, 0, 0, 1]}})";
    use(pip(pair("dynamicsplit", dark, dark)));
    clear(0, 0.2f, 0, 1);
    now.blending = BlendMode::additive;
    draw(effect);
    EXPECT_PIXEL(pixel(0, kHeight - 1), Pixel{102, 51, 0, 255});
}

} // namespace
