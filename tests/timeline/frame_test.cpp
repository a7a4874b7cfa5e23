#include "support/allocation_count.h"
#include "timeline/timeline_fixture.h"

namespace {

class FrameTest : public TimelineFixture {
protected:
    void frame(float t, float delta) {
        resolvePlayState(timeline, t, state);
        logPlayState(log, timeline, t, state);
        drawTimelineFrame(state, delta, kWidth, kHeight);
    }

    Pixel drawAt(float t, float delta = 0.0f) {
        const LogCapture quiet;
        clear(0, 0, 0, 1);
        frame(t, delta);
        return pixel();
    }

    PlayState state;
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
    EXPECT_PIXEL(drawAt(0.5f), Pixel{51, 102, 0, 128});  // the base's own alpha blends nothing
    EXPECT_PIXEL(drawAt(1.5f), Pixel{102, 102, 0, 191}); // + half of the additive colour
    EXPECT_PIXEL(colourOf(drawAt(2.5f)), Pixel{77, 51, 128, 0}); // layer 1 mixes first, then layer 2 adds
    EXPECT_PIXEL(colourOf(drawAt(3.5f)), Pixel{112, 92, 153, 0}); // "Additive" mixes like any other word
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
}

TEST_F(FrameTest, SceneListDrawsInListOrderBothEndsInclusive) {
    load(R"({"scenes": [{"id": "one", "entries": [
        {"type": "paint", "duration": 4, "params": {"colour": [0.2, 0, 0, 0.5]}},
        {"type": "paint", "delay": 1, "duration": 2, "params": {"colour": [0, 1, 0, 0.2]}},
        {"type": "paint", "delay": -3, "duration": 0, "params": {"colour": [0, 0, 0.4, 1], "blendMode": "additive"}}]}]})");
    const std::pair<float, Pixel> cases[] = {
        {0.999f, {51, 0, 102, 0}}, {1.0f, {41, 51, 102, 0}}, {3.0f, {41, 51, 102, 0}}, {3.01f, {51, 0, 102, 0}},
        {4.5f, {0, 0, 102, 0}},
    };
    for (const auto& [t, wanted] : cases) {
        clear(0, 0, 0, 1);
        drawSceneFrame(timeline, t, 0.0f, kWidth, kHeight);
        EXPECT_PIXEL(colourOf(pixel()), wanted);
    }
}

TEST_F(FrameTest, SteadyFrameAllocatesNothing) {
    std::string entries = R"({"id": "a base with a long name that no small string holds", "type": "clock", "scene": "one"})";
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

} // namespace
