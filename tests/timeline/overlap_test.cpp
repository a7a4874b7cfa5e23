#include "timeline/timeline_fixture.h"

namespace {

class OverlapTest : public TimelineFixture {
protected:
    void TearDown() override {
        releaseTransitionStage(stage);
        TimelineFixture::TearDown();
    }

    // What a frame at t logs; empty when it is as before, "-" when no transition runs.
    std::string logAt(float t) {
        const LogCapture capture;
        if (!resolveTransition(timeline, t, state)) return "-";
        logTransition(log, timeline, t, state);
        return capture.text();
    }

    TransitionState state;
    TransitionStage stage;
};

std::string entry(const std::string& id, const std::string& scene, float start, float duration, const char* more = "") {
    return "{\"type\": \"paint\", \"id\": \"" + id + "\", \"scene\": \"" + scene + "\", \"start\": " +
           std::to_string(start) + ", \"duration\": " + std::to_string(duration) + more + "}";
}

constexpr const char* kOverlay = ", \"overlay\": true";

TEST_F(OverlapTest, TwoScenesLogTheirTransitionOnce) {
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
    logAt(2.25f);
    EXPECT_FLOAT_EQ(state.progress, 0.5f);
    logAt(3.5f);
    EXPECT_FLOAT_EQ(state.progress, 1.0f);
    EXPECT_EQ(timeline.scenes[0].transition.effectId, transitionStyleCode("wavy"));
}

TEST_F(OverlapTest, OnlyTheTwoEarliestOfThreeScenesMix) {
    // By start, then by name; the scene without a name stands aside. Open-ended scenes have no overlap to fade
    // over: the incoming one shows at once. One without a base says so.
    load("{\"entries\": [" + entry("z", "zeta", 1, 0) + "," + entry("a", "alpha", 1, 9) + "," +
         entry("o", "", 0, 9) + "," + entry("l", "alphabet", 1, 0, kOverlay) + "]}");
    const std::string first = logAt(3.5f);
    EXPECT_NE(first.find(" transition 0.278 scene=alpha "), std::string::npos) << first;
    EXPECT_NE(first.find(" -> scene=alphabet sceneIn=1.000s "), std::string::npos) << first;
    load("{\"entries\": [" + entry("a", "alpha", 0, 0) + "," + entry("v", "late", 3, 0, kOverlay) + "]}");
    const std::string open = logAt(3.5f);
    EXPECT_NE(open.find(" transition 1.000 scene=alpha sceneIn=0.000s sceneOut=0.000s -> "), std::string::npos) << open;
    EXPECT_TRUE(open.ends_with("       [IN] (none)\n")) << open;
}

TEST_F(OverlapTest, ScenesAreComposedApartAndThenMixed) {
    load(R"({"entries": [
        {"type": "paint", "scene": "one", "start": 0, "duration": 4, "params": {"colour": [1, 0, 0, 1]}},
        {"type": "paint", "scene": "one", "start": 0, "duration": 4, "overlay": true, "params": {"colour": [0, 0, 1, 0.5]}},
        {"type": "paint", "scene": "two", "start": 2, "duration": 4, "params": {"colour": [0, 1, 0, 1]}},
        {"type": "clock", "scene": "two", "start": 2, "duration": 4, "overlay": true, "params": {"blendMode": "additive"}}]})");
    const LogCapture quiet;
    ASSERT_TRUE(initTransitionRenderer(stage.renderer, show.baseDir));
    ASSERT_TRUE(resolveTransition(timeline, 3.0f, state));
    drawTransitionFrame(stage, timeline, state, 1.0f, kWidth, kHeight);
    // Half of (half red, half blue) and half of (green plus the clock's 1 s).
    EXPECT_PIXEL(pixel(kWidth - 1, kHeight - 1), Pixel{64 + 13, 128, 64, pixel()[3]});
    EXPECT_FLOAT_EQ(timeline.entries[3].effect.localTime, 1.0f);
}

} // namespace
