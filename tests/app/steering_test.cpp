#include "app/loop.h"
#include "app/steering.h"
#include "platform/clock.h"
#include "platform/shell_state.h"
#include "support/log_capture.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

RuntimeConfig configOf(const std::vector<std::pair<float, float>>& entries) {
    RuntimeConfig config;
    config.nativeRuntime = true;
    for (const auto& [start, duration] : entries) {
        config.entries.emplace_back();
        config.entries.back().start = start;
        config.entries.back().duration = duration;
    }
    return config;
}

SceneSpan spanOf(const char* name, float start, float end) {
    SceneSpan span;
    span.name = name;
    span.start = start;
    span.end = end;
    return span;
}

TEST(Navigation, StepsFromSceneToScene) {
    Timeline timeline;
    timeline.scenes = {spanOf("a", 2, 9), spanOf("b", 10, 19), spanOf("c", 20, 29)};
    const struct { float t; int step; const char* scene; float time; } cases[] = {
        {0, 1, "b", 10},     {0, -1, "a", 2}, // before all of them the first is the current one
        {5, 1, "b", 10},     {5, -1, "a", 2},      {2.5f, -1, "a", 2},
        {9.94f, 1, "b", 10}, {9.96f, 1, "c", 20}, // just reached is reached
        {9.96f, -1, "a", 2}, {10.5f, -1, "a", 2},  {11, -1, "a", 2},
        {11.01f, -1, "b", 10}, {25, 1, "c", 20},   {25, -1, "c", 20},   {20.5f, -1, "b", 10}, {1e6f, 1, "c", 20},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.t);
        const SceneStep step = stepScene(timeline, c.t, c.step);
        EXPECT_EQ(step.scene, c.scene);
        EXPECT_EQ(step.time, c.time);
    }
    const SceneStep nowhere = stepScene({}, 3.5f, 1);
    EXPECT_EQ(nowhere.scene, "");
    EXPECT_EQ(nowhere.time, 3.5f);
}

TEST(Navigation, MeasuresTheVisualRange) {
    const struct {
        const char* name;
        std::vector<std::pair<float, float>> entries;
        float start, end, duration;
    } cases[] = {
        {"nothing", {}, 0, 0, 0},
        {"the longest, not the last", {{1, 9}, {2, 1}}, 1, 10, 9},
        {"an open-ended entry that begins last", {{0, 4}, {6, 0}}, 0, 6, 6},
        {"an end before its start", {{5, -3}}, 5, 2, 0},
        {"all before 0", {{-5, 2}}, -5, 0, 5},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const VisualRange range = visualRange(configOf(c.entries));
        EXPECT_EQ(range.start, c.start);
        EXPECT_EQ(range.end, c.end);
        EXPECT_EQ(range.duration, c.duration);
    }
    RuntimeConfig list; // scenes one after another; one without an end holds the show for ever
    list.scenes.resize(2);
    for (SceneSpec& scene : list.scenes) scene.entries.emplace_back();
    list.scenes[1].entries[0].delay = 1;
    EXPECT_EQ(showEnd(list), 11.0);
    list.scenes[0].entries[0].duration = 0;
    EXPECT_EQ(showEnd(list), 0.0);
}

TEST(Navigation, StaysInsideTheRange) {
    const struct { VisualRange range; float t, clamped; } cases[] = {
        {{2, 10, 8}, 5, 5},   {{2, 10, 8}, 1, 2},       {{2, 10, 8}, 10, 10 - 0.001f},
        {{2, 10, 8}, 1e9f, 10 - 0.001f},                {{2, 10, 8}, -1e9f, 2},
        {{2, 2.0005f, 0.0005f}, 2.0004f, 2},            {{3, 3, 0}, 9, 3},
        {{3, 0, 0}, 9, 3},    {{-5, 0, 5}, 7, -0.001f},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(clampToRange(c.range, c.t), c.clamped) << c.range.start << " to " << c.range.end << " at " << c.t;
    }
    // A step back of a millisecond is lost where floats lie further apart; the end itself would end the show.
    for (const float end : {100.0f, 30000.0f, 40000.0f, 1e6f}) {
        EXPECT_LT(lastVisibleTime({0, end, end}), end);
        EXPECT_GT(lastVisibleTime({0, end, end}), end - 0.1f);
    }
}

TEST(Navigation, SetsEffectClocksAsIfTheyHadPlayed) {
    const struct { float start, timeScale, t, localTime; int frames; } cases[] = {
        {2, 0.5f, 6, 2, 240},         {2, 1, 1, 0, 0}, // not begun yet
        {0, -1, 3, -3, 180},          {0, 1, 0.025f, 0.025f, 2}, // half a frame rounds away from 0
        {0, 1, 0.02f, 0.02f, 1},      {-1e30f, 0, 0, 0, 2147483520},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.start << " at " << c.t);
        Timeline timeline;
        timeline.entries.resize(2);
        timeline.entries[1].start = c.start;
        timeline.entries[1].effect.timeScale = c.timeScale;
        seekEffects(timeline, c.t);
        EXPECT_EQ(timeline.entries[1].effect.localTime, c.localTime);
        EXPECT_EQ(timeline.entries[1].effect.frameCounter, c.frames);
    }
}

// Scenes "a" at 0 s and "b" at 20 s of a range from 0 s to 60 s.
class ControlTest : public testing::Test {
protected:
    void SetUp() override {
        shellState() = {};
        player.timeline.scenes = {spanOf("a", 0, 30), spanOf("b", 20, 60)};
        player.timeline.entries.resize(2);
        for (int i = 0; i < 2; ++i) {
            player.timeline.entries[i].scene = i;
            player.timeline.entries[i].start = player.timeline.scenes[i].start;
            player.timeline.entries[i].duration = i == 0 ? 30 : 40;
        }
        player.clock = startClock(5, 60);
        player.log.lastKey = "before";
    }
    void TearDown() override { shellState() = {}; }

    std::string apply() {
        const LogCapture log;
        applyControls(player, {0, 60, 60});
        return log.text();
    }

    Player player;
};

TEST_F(ControlTest, StepsFirstAndSeeksThen) {
    shellState().pendingSeekSeconds = 0.0005f; // less than a seek
    EXPECT_EQ(apply(), "");
    EXPECT_EQ(player.log.lastKey, "before");
    shellState().pendingSeekSeconds = 0.0f;
    for (const PlayerKey key : {PlayerKey::left, PlayerKey::right, PlayerKey::up}) pressKey(key); // the last step wins
    EXPECT_EQ(apply(), "[SEEK] t=30.000s scene=b\n");
    EXPECT_EQ(player.clock.showTime, 30.0);
    EXPECT_EQ(player.timeline.entries[1].effect.localTime, 10.0f);
    EXPECT_EQ(player.timeline.entries[0].effect.frameCounter, 1800);
    EXPECT_EQ(player.log.lastKey, "");
    EXPECT_EQ(apply(), ""); // carried out once
}

TEST_F(ControlTest, AddsSeeksUpAndNamesTheLastSceneThatPlays) {
    const struct { int ups, downs; const char* log; } cases[] = {
        {1, 1, ""},
        {2, 0, "[SEEK] t=25.000s scene=b\n"}, // both play
        {0, 1, "[SEEK] t=15.000s scene=a\n"},
        {0, 3, "[SEEK] t=0.000s scene=a\n"},
        {9, 0, "[SEEK] t=59.999s scene=b\n"},
    };
    for (const auto& c : cases) {
        for (int i = 0; i < c.ups; ++i) pressKey(PlayerKey::up);
        for (int i = 0; i < c.downs; ++i) pressKey(PlayerKey::down);
        EXPECT_EQ(apply(), c.log);
    }
    player.timeline = {};
    pressKey(PlayerKey::right);
    EXPECT_EQ(apply(), "[SEEK] t=59.999s scene=(none)\n");
}

TEST_F(ControlTest, DeliversScriptedKeysInTheFrameThatReachesThem) {
    const double times[] = {0.0, 0.1, 0.1001, 1.0};
    for (const double time : times) player.options.keys.push_back({time, PlayerKey::up});
    int arrivals[4] = {}, delivered = 0;
    for (int frame = 0; frame < 100; ++frame) {
        tickClock(player.clock);
        pressScriptedKeys(player);
        for (; delivered < std::lround(shellState().pendingSeekSeconds / 10); ++delivered) arrivals[delivered] = frame;
    }
    EXPECT_EQ(delivered, 4);
    const int expected[] = {0, 6, 7, 60};
    for (int i = 0; i < 4; ++i) EXPECT_EQ(arrivals[i], expected[i]) << times[i];
}

TEST(Clock, SteppedFramesCarryNoRounding) {
    for (const double fps : {60.0, 23.976, 0.5}) {
        SCOPED_TRACE(fps);
        RunClock clock = startClock(2.5, fps);
        double start = 2.5;
        int first = 0; // frame of the last jump
        for (int frame = 0; frame < 5000; ++frame) {
            tickClock(clock);
            if (frame == 1000 || frame == 1001) {
                jumpClock(clock, start = frame + 0.1);
                first = frame;
            }
            ASSERT_EQ(clock.showTime, start + (frame - first) / fps) << frame;
            ASSERT_EQ(clock.elapsed, frame / fps) << frame;
            ASSERT_EQ(clock.delta, frame == 0 ? 0.0f : static_cast<float>(1.0 / fps)) << frame;
        }
    }
}

TEST(Clock, StallsAreCutShort) {
    RunClock clock = startClock(3, 0);
    clock.lastCounter -= 5 * clockFrequency();
    tickClock(clock);
    EXPECT_EQ(clock.delta, 0.1f);
    EXPECT_EQ(clock.showTime, 3 + static_cast<double>(0.1f));
    clock.lastCounter -= 5 * clockFrequency();
    restartCounter(clock);
    tickClock(clock);
    EXPECT_LT(clock.delta, 0.1f); // the time before the restart is forgotten
}

TEST(Output, NumbersFrames) {
    const struct { const char* pattern; long long number; const char* path; } cases[] = {
        {"f-%04d.png", 42, "f-0042.png"}, {"%02d/f.png", 12345, "12345/f.png"}, {"%09d", 1, "000000001"},
        {"%0d", 3, "3"},                  {"%%%d%%d", 5, "%5%d"},               {"100%%.png", 7, "100%.png"},
    };
    std::string path;
    bool hasNumber = false;
    for (const auto& c : cases) {
        ASSERT_TRUE(framePath(c.pattern, c.number, path, hasNumber)) << c.pattern;
        EXPECT_EQ(path, c.path);
    }
    EXPECT_FALSE(hasNumber); // "%%" is none
    for (const char* pattern : {"%010d", "%99999999999999999999d", "%4d", "%d-%d", "%s", "%n", "%ld", "%-4d", "f%",
                                "f%04", "%5$d", "%*d"}) {
        EXPECT_FALSE(framePath(pattern, 1, path, hasNumber)) << pattern;
    }
}

} // namespace
