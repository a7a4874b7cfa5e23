#include "support/effect_fixture.h"
#include "support/log_capture.h"

#include "timeline/frame.h"

namespace {

class OverlapTest : public EffectFixture {
protected:
    void SetUp() override {
        EffectFixture::SetUp();
        writeShader("paint", "uniform vec4 colour = vec4(1); void main() { c = colour; }");
        writeShader("clock", "uniform float iTime; void main() { c = vec4(iTime / 10.0, 0, 0, 1); }");
        show.write("assets/shaders/transition/Transition.vert", kQuadVertexSource);
        show.write("assets/shaders/transition/Transition.frag",
                   "#version 330 core\nin vec2 vUV; out vec4 c; uniform sampler2D texA, texB; uniform float progress;"
                   "void main() { c = mix(texture(texA, vUV), texture(texB, vUV), progress); }");
    }

    void TearDown() override {
        releaseTimeline(timeline);
        releaseTransitionStage(stage);
        EffectFixture::TearDown();
    }

    void load(const std::string& json) {
        LogCapture quiet;
        config = loadRuntimeConfig(show.write("config.json", json), {nullptr, resolveShaderSources});
        loadTimeline(timeline, config, kWidth, kHeight);
        ASSERT_TRUE(initTransitionRenderer(stage.renderer, show.baseDir));
    }

    // What a frame at t logs; empty when it is as before, "-" when no transition runs.
    std::string logAt(float t) {
        LogCapture capture;
        if (!resolveTransition(timeline, t, state)) return "-";
        logTransition(log, timeline, t, state);
        return capture.text();
    }

    RuntimeConfig config;
    Timeline timeline;
    TransitionState state;
    TransitionStage stage;
    PlayLog log;
};

std::string entry(const std::string& id, const std::string& scene, const std::string& rest) {
    return "{\"id\": \"" + id + "\", \"type\": \"paint\", \"scene\": \"" + scene + "\", " + rest + "}";
}

TEST_F(OverlapTest, TwoScenesLogTheirTransitionOnce) {
    const std::string entries = entry("a1", "one", "\"start\": 0, \"duration\": 4") + ", " +
                                entry("a2", "one", "\"start\": 1, \"duration\": 1, \"overlay\": true") + ", " +
                                entry("b1", "two", "\"start\": 2, \"duration\": 5");
    load("{\"entries\": [" + entries + "]}");
    EXPECT_EQ(logAt(1.5f), "-");
    // Without a preset a fade over the overlap, 2 s to 4 s.
    EXPECT_EQ(logAt(2.5f),
              "[PLAY] t=2.500s transition 0.250 scene=one sceneIn=0.000s sceneOut=4.000s -> scene=two sceneIn=2.000s "
              "sceneOut=7.000s\n"
              "       [OUT] scene=one id=a1 type=paint entryIn=0.000s entryOut=4.000s dur=4.000s layer=0\n"
              "       [IN] scene=two id=b1 type=paint entryIn=2.000s entryOut=7.000s dur=5.000s layer=0\n");
    EXPECT_EQ(logAt(3.0f), "");
    EXPECT_FLOAT_EQ(state.progress, 0.5f);
    EXPECT_EQ(logAt(4.0f), "-");
    releaseTransitionStage(stage);

    // The preset of the outgoing scene sets the duration; progress stops at 1 while both scenes play.
    log = {};
    load(R"({"transitions": {"one": {"type": "wavy", "duration": 0.5}, "two": {"duration": 9}}, "entries": [)" + entries + "]}");
    EXPECT_NE(logAt(2.25f).find("transition 0.500 scene=one"), std::string::npos);
    logAt(3.5f);
    EXPECT_FLOAT_EQ(state.progress, 1.0f);
    EXPECT_EQ(timeline.scenes[0].transition.effectId, transitionStyleCode("wavy"));
}

TEST_F(OverlapTest, OnlyTheTwoEarliestOfThreeScenesMix) {
    // By start, then by name; the scene without a name stands aside.
    load("{\"entries\": [" + entry("z", "zeta", "\"start\": 1, \"duration\": 0") + ", " +
         entry("a", "alpha", "\"start\": 1, \"duration\": 9") + ", " + entry("l", "alphabet", "\"start\": 1, \"duration\": 9") +
         ", " + entry("o", "", "\"start\": 0, \"duration\": 9") + ", " +
         entry("v", "late", "\"start\": 3, \"duration\": 2, \"overlay\": true") + "]}");
    const std::string text = logAt(3.5f);
    EXPECT_NE(text.find("scene=alpha sceneIn=1.000s sceneOut=10.000s -> scene=alphabet"), std::string::npos) << text;

    // Open-ended scenes have no overlap to fade over: the incoming one shows at once. One without a base says so.
    load("{\"entries\": [" + entry("a", "alpha", "\"start\": 0, \"duration\": 0") + ", " +
         entry("v", "late", "\"start\": 3, \"duration\": 0, \"overlay\": true") + "]}");
    log = {};
    const std::string open = logAt(3.5f);
    EXPECT_NE(open.find("transition 1.000 scene=alpha sceneIn=0.000s sceneOut=0.000s -> scene=late"), std::string::npos);
    EXPECT_TRUE(open.ends_with("       [IN] (none)\n")) << open;
}

TEST_F(OverlapTest, ScenesAreComposedApartAndThenMixed) {
    load(R"({"entries": [
        {"type": "paint", "scene": "one", "start": 0, "duration": 4, "params": {"colour": [1, 0, 0, 1]}},
        {"type": "paint", "scene": "one", "start": 0, "duration": 4, "overlay": true, "params": {"colour": [0, 0, 1, 0.5]}},
        {"type": "paint", "scene": "two", "start": 2, "duration": 4, "params": {"colour": [0, 1, 0, 1]}},
        {"type": "clock", "scene": "two", "start": 2, "duration": 4, "overlay": true, "params": {"blendMode": "additive"}}]})");
    ASSERT_TRUE(resolveTransition(timeline, 3.0f, state));
    drawTransitionFrame(stage, timeline, state, 1.0f, kWidth, kHeight);
    // Half of (half red, half blue) and half of (green plus the clock's 1 s).
    const Pixel mixed = pixel(kWidth - 1, kHeight - 1);
    EXPECT_NEAR(mixed[0], 64 + 13, 2);
    EXPECT_NEAR(mixed[1], 128, 2);
    EXPECT_NEAR(mixed[2], 64, 2);

    const GLuint textures[] = {stage.outgoing.texture, stage.incoming.texture};
    drawTransitionFrame(stage, timeline, state, 1.0f, kWidth, kHeight);
    EXPECT_EQ(stage.outgoing.texture, textures[0]);
    EXPECT_EQ(stage.incoming.texture, textures[1]);
    EXPECT_FLOAT_EQ(timeline.entries[3].effect.localTime, 2.0f);
}

} // namespace
