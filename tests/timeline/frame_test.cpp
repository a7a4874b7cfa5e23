// Timelines of shows in a temporary folder, drawn with the common shaders.
#include "support/allocation_count.h"
#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include "timeline/frame.h"

namespace {

class FrameTest : public EffectFixture {
protected:
    void SetUp() override {
        EffectFixture::SetUp();
        writeCommonShaders();
    }

    void TearDown() override {
        releaseStage(stage);
        EffectFixture::TearDown();
    }

    void load(const std::string& json) {
        const LogCapture quiet;
        config = loadRuntimeConfig(show.write("config.json", json));
        releaseStage(stage);
        stage.device = createDevice();
        timeline = config.nativeRuntime ? loadTimeline(stage, config, kWidth, kHeight)
                                        : loadScene(stage, config, 0, kWidth, kHeight);
        makeTransition(stage, config.baseDir, kWidth, kHeight);
        warmUpTimeline(stage, stage.parts[0], timeline, kWidth, kHeight);
        resetClocks(clocks, timeline);
    }

    void drawNow(float delta) {
        runClocks(clocks, timeline, delta, moment);
        drawMoment(stage, stage.parts[0], moment, kWidth, kHeight);
    }

    void frame(float t, float delta) {
        resolveMoment(timeline, t, false, scratch, moment);
        logPlayState(log, timeline, t, scratch.state);
        drawNow(delta);
    }

    Pixel drawAt(float t, float delta = 0.0f) {
        const LogCapture quiet;
        clear(0, 0, 0, 1);
        frame(t, delta);
        return pixel();
    }

    // What a frame at t logs of a transition; empty when it is as before, "-" when none runs.
    std::string logAt(float t) {
        const LogCapture capture;
        if (!resolveTransition(timeline, t, scratch.transition)) return "-";
        logTransition(log, timeline, t, scratch.transition);
        return capture.text();
    }

    RuntimeConfig config;
    Stage stage;
    Timeline timeline;
    Clocks clocks;
    PlayScratch scratch;
    Moment moment;
    PlayLog log;
};

// Alpha aside.
Pixel colourOf(const Pixel& pixel) {
    return {pixel[0], pixel[1], pixel[2], 0};
}

TEST_F(FrameTest, OverlaysBlendOverTheBaseInLayerOrder) {
    load(R"({"entries": [
        {"type": "paint", "start": 0, "duration": 10, "params": {"colour": [0.2, 0.4, 0, 0.5]}},
        {"type": "paint", "start": 1, "duration": 9, "overlay": true, "layer": 2,
         "params": {"colour": [0.4, 0, 0, 0.5], "blendMode": "additive"}},
        {"type": "paint", "start": 2, "duration": 8, "overlay": true, "layer": 1, "params": {"colour": [0, 0, 1, 0.5]}},
        {"type": "paint", "start": 3, "duration": 7, "overlay": true, "layer": 3,
         "params": {"colour": [1, 1, 1, 0.2], "blendMode": "Additive"}}]})");
    EXPECT_PIXEL(drawAt(0.5f), Pixel{51, 102, 0, 128});           // the base's own alpha blends nothing
    EXPECT_PIXEL(drawAt(1.5f), Pixel{102, 102, 0, 191});          // + half of the additive colour
    EXPECT_PIXEL(colourOf(drawAt(2.5f)), Pixel{77, 51, 128, 0});  // layer 1 mixes first, then layer 2 adds
    EXPECT_PIXEL(colourOf(drawAt(3.5f)), Pixel{112, 92, 153, 0}); // "Additive" mixes like any other word
}

TEST_F(FrameTest, ClocksRunOnlyWhileDrawn) {
    load(R"({"entries": [
        {"type": "clock", "start": 0, "duration": 2, "params": {"timeScale": 2}},
        {"type": "clock", "start": 2, "duration": 2}]})");
    drawAt(0.0f, 0.5f);
    EXPECT_PIXEL(drawAt(1.0f, 0.5f), Pixel{51, 2, 0, 255}); // 2 x (0.5 + 0.5) s, two frames
    EXPECT_PIXEL(drawAt(2.0f, 0.25f), Pixel{6, 1, 0, 255});
    EXPECT_PIXEL(drawAt(1.5f, 0.0f), Pixel{51, 3, 0, 255});
    seekClock(clocks.entries[0], 2.0f, 1.5f);
    EXPECT_PIXEL(drawAt(1.5f, 0.0f), Pixel{77, 91, 0, 255}); // 60 frames a second, and this one
}

TEST_F(FrameTest, SceneListDrawsInListOrderBothEndsInclusive) {
    load(R"({"scenes": [{"id": "one", "entries": [
        {"type": "paint", "duration": 4, "params": {"colour": [0.2, 0, 0, 0.5]}},
        {"type": "paint", "delay": 1, "duration": 2, "params": {"colour": [0, 1, 0, 0.2]}},
        {"type": "paint", "delay": -3, "duration": 0, "params": {"colour": [0, 0, 0.4, 1], "blendMode": "additive"}}]}]})");
    const std::pair<float, Pixel> cases[] = {
        {0.999f, {51, 0, 102, 0}}, {1.0f, {41, 51, 102, 0}}, {3.0f, {41, 51, 102, 0}},
        {3.01f, {51, 0, 102, 0}},  {4.5f, {0, 0, 102, 0}},
    };
    for (const auto& [t, wanted] : cases) {
        clear(0, 0, 0, 1);
        resolveSceneMoment(timeline, t, moment);
        drawNow(0.0f);
        EXPECT_PIXEL(colourOf(pixel()), wanted);
    }
}

TEST_F(FrameTest, SteadyFrameAllocatesNothing) {
    std::string entries =
        R"({"id": "a base with a long name that no small string holds", "type": "clock", "scene": "one"})";
    for (int i = 0; i < 12; ++i) {
        entries += R"(, {"type": "paint", "overlay": true, "params": {"colour": [1, 1, 1, 0.1]}, "layer": )" +
                   std::to_string(12 - i) + "}";
    }
    load("{\"entries\": [" + entries + "]}");
    const LogCapture quiet;
    for (int i = 0; i < 3; ++i) frame(static_cast<float>(i) * 0.01f, 0.01f);
    const long before = allocationCount();
    for (int i = 3; i < 60; ++i) frame(static_cast<float>(i) * 0.01f, 0.01f);
    EXPECT_EQ(allocationCount() - before, 0);
}

// An entry that paints: name, scene, start, duration.
std::string entry(const std::string& id, const std::string& scene, int start, int duration, const char* more = "") {
    return "{\"type\": \"paint\", \"id\": \"" + id + "\", \"scene\": \"" + scene +
           "\", \"start\": " + std::to_string(start) + ", \"duration\": " + std::to_string(duration) + more + "}";
}

constexpr const char* kOverlay = ", \"overlay\": true";

TEST_F(FrameTest, TwoScenesLogTheirTransitionOnce) {
    const std::string entries = "\"entries\": [" + entry("a1", "one", 0, 4) + "," + entry("a2", "one", 1, 1, kOverlay) +
                                "," + entry("b1", "two", 2, 5) + "]}";
    load("{" + entries);
    EXPECT_EQ(logAt(1.5f), "-");
    // Without a preset a fade over the overlap, 2 s to 4 s.
    EXPECT_EQ(logAt(2.5f),
              "[PLAY] t=2.500s transition 0.250 scene=one sceneIn=0.000s sceneOut=4.000s -> scene=two sceneIn=2.000s "
              "sceneOut=7.000s\n"
              "       [OUT] scene=one id=a1 type=paint entryIn=0.000s entryOut=4.000s dur=4.000s layer=0\n"
              "       [IN] scene=two id=b1 type=paint entryIn=2.000s entryOut=7.000s dur=5.000s layer=0\n");
    EXPECT_EQ(logAt(3.0f), "");
    EXPECT_EQ(logAt(4.0f), "-");

    // The preset of the outgoing scene sets the duration; progress stops at 1 while both scenes play.
    load(R"({"transitions": {"one": {"type": "wavy", "duration": 0.5}, "two": {"duration": 9}},)" + entries);
    for (const auto& [t, progress] : {std::pair(2.25f, 0.5f), {3.5f, 1.0f}}) {
        logAt(t);
        EXPECT_FLOAT_EQ(scratch.transition.progress, progress);
    }
    EXPECT_EQ(timeline.scenes[0].transition.effectId, transitionStyleCode("wavy"));
}

TEST_F(FrameTest, OnlyTheTwoEarliestOfThreeScenesMix) {
    // By start, then by name; the scene without a name stands aside. Open-ended scenes have no overlap to fade
    // over: the incoming one shows at once. One without a base says so.
    load("{\"entries\": [" + entry("z", "zeta", 1, 0) + "," + entry("a", "alpha", 1, 9) + "," + entry("o", "", 0, 9) +
         "," + entry("l", "alphabet", 1, 0, kOverlay) + "]}");
    const std::string first = logAt(3.5f);
    EXPECT_NE(first.find(" transition 0.278 scene=alpha "), std::string::npos) << first;
    EXPECT_NE(first.find(" -> scene=alphabet sceneIn=1.000s "), std::string::npos) << first;
    load("{\"entries\": [" + entry("a", "alpha", 0, 0) + "," + entry("v", "late", 3, 0, kOverlay) + "]}");
    const std::string open = logAt(3.5f);
    EXPECT_NE(open.find(" transition 1.000 scene=alpha sceneIn=0.000s sceneOut=0.000s -> "), std::string::npos) << open;
    EXPECT_TRUE(open.ends_with("       [IN] (none)\n")) << open;
}

TEST_F(FrameTest, NothingOfTheFrameBeforeIsSampled) {
    // Channel 0 without a picture: black at first, and then what the same frame has left there.
    writeShader("bare", "uniform sampler2D iChannel0; void main() { c = texture(iChannel0, vec2(0.5)); }");
    writeShader("shown", "uniform sampler2D iChannel0; void main() { c = texture(iChannel0, vec2(0.5)); }");
    writePicture("red.png", {255, 0, 0, 255});
    load(
        "{\"entries\": [{\"type\": \"bare\", \"duration\": 9},"
        "{\"type\": \"shown\", \"overlay\": true, \"params\": {\"image\": \"red.png\", \"blendMode\": \"additive\"}}," +
        entry("a", "one", 20, 4) + "," + entry("b", "two", 22, 4) + "]}");
    for (int i = 0; i < 2; ++i) {
        EXPECT_PIXEL(drawAt(8.0f), Pixel{0, 0, 0, 255});
        EXPECT_PIXEL(drawAt(0.5f), Pixel{255, 0, 0, 255});
    }
}

TEST_F(FrameTest, AWrapBeginsAnewAndMakesNothing) {
    writeShader("grow", "uniform sampler2D uBufferA; void main() { c = texture(uBufferA, vec2(0.5)); }");
    writeShader("grow", "uniform sampler2D uBufferA; void main() { c = texture(uBufferA, vec2(0.5)) + vec4(0.2); }",
                "growBufferA");
    load(R"({"entries": [{"type": "grow"}, {"type": "gone", "overlay": true}]})");
    for (int pass = 0; pass < 2; ++pass) {
        for (int i = 1; i <= 3; ++i)
            EXPECT_PIXEL(drawAt(0.1f * static_cast<float>(i), 0.1f), Pixel{51 * i, 51 * i, 51 * i, 51 * i});
        const LogCapture again;
        logAgain(stage.parts[0].log);
        resetEffects(stage.parts[0]);
        resetClocks(clocks, timeline);
        EXPECT_EQ(again.text(), "[TIMELINE] Loading 2 entries\n"
                                "  [LOAD] t=0.000s dur=5.000s scene=(none) type=grow\n  [OK] grow (+BufferA)\n"
                                "  [LOAD] t=0.000s dur=5.000s scene=(none) type=gone\n"
                                "    [WARN] Vert not found: (none) (using default)\n"
                                "    [ERROR] Frag not found: (none)\n  [SKIP] gone (shader failed)\n");
    }
}

TEST_F(FrameTest, ScenesAreComposedApartAndThenMixed) {
    load(R"({"entries": [
        {"type": "paint", "scene": "one", "start": 0, "duration": 4, "params": {"colour": [1, 0, 0, 1]}},
        {"type": "paint", "scene": "one", "start": 0, "duration": 4, "overlay": true, "params": {"colour": [0, 0, 1, 0.5]}},
        {"type": "paint", "scene": "two", "start": 2, "duration": 4, "params": {"colour": [0, 1, 0, 1]}},
        {"type": "clock", "scene": "two", "start": 2, "duration": 4, "overlay": true, "params": {"blendMode": "additive"}}]})");
    const LogCapture quiet;
    resolveMoment(timeline, 3.0f, true, scratch, moment);
    ASSERT_TRUE(moment.inTransition);
    drawNow(1.0f);
    // Half of (half red, half blue) and half of (green plus the clock's 1 s).
    EXPECT_PIXEL(pixel(kWidth - 1, kHeight - 1), Pixel{64 + 13, 128, 64, pixel()[3]});
    EXPECT_EQ(moment.incoming.back().time, 1.0);
}

} // namespace
