#include "support/allocation_count.h"
#include "support/gl_test.h"
#include "support/log_capture.h"
#include "support/temp_show.h"

#include "config/runtime_config.h"
#include "gpu/program_pool.h"
#include "gpu/shader_lookup.h"
#include "gpu/textures.h"
#include "timeline/frame.h"

namespace {

class FrameTest : public GlTest {
protected:
    static void TearDownTestSuite() {
        deleteTextures();
        deletePooledPrograms();
        GlTest::TearDownTestSuite();
    }

    void SetUp() override {
        GlTest::SetUp();
        // Paints the colour of its params; "clock" paints time and frame.
        show.write("assets/shaders/paint/paint.frag",
                   "#version 330 core\nout vec4 c; uniform vec4 colour; void main() { c = colour; }");
        show.write("assets/shaders/clock/clock.frag",
                   "#version 330 core\nout vec4 c; uniform float iTime; uniform int iFrame;"
                   "void main() { c = vec4(iTime / 10.0, float(iFrame) / 255.0, 0, 1); }");
    }

    void TearDown() override {
        releaseTimeline(timeline);
        GlTest::TearDown();
    }

    void load(const std::string& json) {
        LogCapture log;
        config = loadRuntimeConfig(show.write("config.json", json), {nullptr, resolveShaderSources});
        if (config.nativeRuntime) {
            loadTimeline(timeline, config, kWidth, kHeight);
        } else {
            loadScene(timeline, config, 0, kWidth, kHeight);
        }
        loadLog = log.text();
    }

    Pixel drawAt(float t, float delta = 0.0f) {
        clear(0, 0, 0, 1);
        resolvePlayState(timeline, t, state);
        drawTimelineFrame(state, delta, kWidth, kHeight);
        return pixel();
    }

    Pixel drawSceneAt(float t, float delta = 0.0f) {
        clear(0, 0, 0, 1);
        drawSceneFrame(timeline, t, delta, kWidth, kHeight);
        return pixel();
    }

    TempShow show;
    RuntimeConfig config;
    Timeline timeline;
    PlayState state;
    std::string loadLog;
};

TEST_F(FrameTest, OverlaysBlendOverTheBaseInLayerOrder) {
    load(R"({"entries": [
        {"type": "paint", "start": 0, "duration": 10, "params": {"colour": [0.2, 0.4, 0, 0.5]}},
        {"type": "paint", "start": 1, "duration": 9, "overlay": true, "layer": 2, "params": {"colour": [0.4, 0, 0, 0.5], "blendMode": "additive"}},
        {"type": "paint", "start": 2, "duration": 8, "overlay": true, "layer": 1, "params": {"colour": [0, 0, 1, 0.5]}},
        {"type": "paint", "start": 3, "duration": 7, "overlay": true, "layer": 3, "params": {"colour": [1, 1, 1, 0.2], "blendMode": "Additive"}}]})");
    EXPECT_PIXEL(drawAt(0.5f), Pixel{51, 102, 0, 128});  // the base's own alpha blends nothing
    EXPECT_PIXEL(drawAt(1.5f), Pixel{102, 102, 0, 191}); // + half of the additive colour
    // Layer 1 mixes first, then layer 2 adds.
    EXPECT_TRUE(isNear(drawAt(2.5f), Pixel{77, 51, 128, 255}, 130) && isNear({pixel()[0], pixel()[1], pixel()[2], 0}, {77, 51, 128, 0}))
        << testing::PrintToString(pixel());
    // Another letter case of "additive" mixes like any other word.
    const Pixel mixed = drawAt(3.5f);
    EXPECT_TRUE(isNear({mixed[0], mixed[1], mixed[2], 0}, {112, 92, 153, 0})) << testing::PrintToString(mixed);
}

TEST_F(FrameTest, ClocksRunOnlyWhileDrawn) {
    load(R"({"entries": [
        {"id": "a", "type": "clock", "start": 0, "duration": 2, "params": {"timeScale": 2}},
        {"id": "b", "type": "clock", "start": 2, "duration": 2}]})");
    drawAt(0.0f, 0.5f);
    EXPECT_PIXEL(drawAt(1.0f, 0.5f), Pixel{51, 2, 0, 255}); // 2 x (0.5 + 0.5) s, two frames
    EXPECT_PIXEL(drawAt(2.0f, 0.25f), Pixel{6, 1, 0, 255});
    EXPECT_PIXEL(drawAt(1.5f, 0.0f), Pixel{51, 3, 0, 255});
    seekEffect(timeline.entries[1].effect, 1.5f);
    EXPECT_PIXEL(drawAt(3.5f, 0.0f), Pixel{38, 91, 0, 255}); // 60 frames a second, and this one
    seekEffect(timeline.entries[1].effect, -3.0f);
    EXPECT_EQ(timeline.entries[1].effect.frameCounter, 0);
}

TEST_F(FrameTest, SceneListDrawsInListOrderBothEndsInclusive) {
    load(R"({"scenes": [{"id": "one", "entries": [
        {"type": "paint", "duration": 4, "params": {"colour": [0.2, 0, 0, 0.5]}},
        {"type": "paint", "delay": 1, "duration": 2, "params": {"colour": [0, 1, 0, 0.2]}},
        {"type": "paint", "delay": -3, "duration": 0, "params": {"colour": [0, 0, 0.4, 1], "blendMode": "additive"}}]}]})");
    EXPECT_FLOAT_EQ(sceneDuration(config, 0), 4.0f);
    EXPECT_FLOAT_EQ(sceneDuration(config, 7), 0.0f);
    struct Case {
        float t;
        Pixel wanted; // alpha aside
    };
    const Case cases[] = {
        {0.0f, {51, 0, 102, 0}},  {0.999f, {51, 0, 102, 0}}, {1.0f, {41, 51, 102, 0}},
        {3.0f, {41, 51, 102, 0}}, {3.01f, {51, 0, 102, 0}},  {4.5f, {0, 0, 102, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.t);
        Pixel got = drawSceneAt(c.t);
        got[3] = 0;
        EXPECT_PIXEL(got, c.wanted);
    }
}

TEST_F(FrameTest, FailedEntriesLeaveNoGap) {
    load(R"({"schemaVersion": "native-runtime/v1", "entries": [
        {"type": "rotatingcube", "duration": 30},
        {"type": "nowhere", "duration": 1},
        {"type": "paint", "scene": "s", "start": 1, "duration": 1, "params": {"colour": [0, 1, 0, 1]}}]})");
    const std::string wanted = "[TIMELINE] Loading 3 entries\n"
                               "  [SKIP] rotatingcube (CPU-only, not supported)\n"
                               "  [LOAD] t=0.000s dur=1.000s scene=(none) type=nowhere\n"
                               "    [WARN] Vert not found: (none) (using default)\n"
                               "    [ERROR] Frag not found: (none)\n"
                               "  [SKIP] nowhere (shader failed)\n"
                               "  [LOAD] t=1.000s dur=1.000s scene=s type=paint\n"
                               "    [WARN] Vert not found: (none) (using default)\n"
                               "  [OK] paint\n";
    EXPECT_NE(loadLog.find(wanted), std::string::npos) << loadLog;
    EXPECT_EQ(timeline.entries.size(), 1u);
    EXPECT_PIXEL(drawAt(0.0f), Pixel{0, 255, 0, 255});
}

TEST_F(FrameTest, SteadyFrameAllocatesNothing) {
    std::string entries = R"({"id": "a base with a long name that no small string holds", "type": "clock", "scene": "first", "duration": 9})";
    for (int i = 0; i < 12; ++i) {
        entries += R"(, {"type": "paint", "overlay": true, "duration": 9, "layer": )" + std::to_string(12 - i) + R"(, "params": {"colour": [1, 1, 1, 0.1]}})";
    }
    load("{\"entries\": [" + entries + "]}");
    PlayLog log;
    LogCapture capture;
    const auto frame = [&](float t) {
        resolvePlayState(timeline, t, state);
        logPlayState(log, timeline, t, state);
        drawTimelineFrame(state, 0.01f, kWidth, kHeight);
    };
    for (int i = 0; i < 3; ++i) frame(static_cast<float>(i) * 0.01f);
    const long before = allocationCount();
    for (int i = 3; i < 60; ++i) frame(static_cast<float>(i) * 0.01f);
    EXPECT_EQ(allocationCount() - before, 0);
}

} // namespace
