#include "app/loop.h"
#include "app/steering.h"
#include "platform/clock.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(Navigation, StepsFromSceneToScene) {
    Timeline timeline;
    timeline.scenes = {{"a", 2, 9, {}, 0}, {"b", 10, 19, {}, 0}, {"c", 20, 29, {}, 0}};
    const struct {
        float t;
        int step;
        const char* scene;
        float time;
    } cases[] = {
        {0, 1, "b", 10},     {0, -1, "a", 2}, // before all of them the first is the current one
        {2.5f, -1, "a", 2},  {9.94f, 1, "b", 10}, {9.96f, 1, "c", 20}, // just reached is reached
        {10.5f, -1, "a", 2}, {11, -1, "a", 2},    {11.01f, -1, "b", 10}, {1e6f, 1, "c", 20},
    };
    for (const auto& c : cases) {
        const SceneStep step = stepScene(timeline, c.t, c.step);
        EXPECT_EQ(std::pair(step.scene, step.time), std::pair(std::string(c.scene), c.time)) << c.t;
    }
    EXPECT_EQ(stepScene({}, 3.5f, 1).time, 3.5f);
}

TEST(Navigation, StaysInsideTheRange) {
    const struct {
        VisualRange range;
        float t, clamped;
    } cases[] = {
        {{2, 10, 8}, 5, 5}, {{2, 10, 8}, 10, 10 - 0.001f}, {{2, 10, 8}, -1e9f, 2}, {{2, 2.0005f, 0.0005f}, 2.0004f, 2},
        {{3, 0, 0}, 9, 3},  {{-5, 0, 5}, 7, -0.001f},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(clampToRange(c.range, c.t), c.clamped) << c.range.end << " at " << c.t;
    }
    // A step back of a millisecond is lost where floats lie further apart; the end itself would end the show.
    for (const float end : {30000.0f, 40000.0f, 1e6f}) EXPECT_LT(lastVisibleTime({0, end, end}), end);
}

TEST(Navigation, WhatHasReachedTheEndBeginsAnew) {
    const Player player;
    for (const float start : {0.0f, 60.0f, 600.0f, 3600.0f}) {
        for (const float duration : {0.1f, 1.7f, 33.3f}) {
            VisualRange range = {start, start + duration, 0.0f};
            range.duration = range.end - range.start;
            for (int i = -50; i < 50; ++i) { // times that a float cannot tell from the end
                const double end = static_cast<double>(range.end), t = end + i * 1e-6;
                const double wrapped = wrapTime(range, t);
                EXPECT_EQ(hasReached(player, t, end), wrapped < t) << start << " + " << duration << " at " << i;
                EXPECT_LT(wrapped, end);
            }
        }
    }
}

TEST(Clock, StallsAreCutShort) {
    RunClock clock = startClock(3, 0);
    clock.lastCounter -= 5 * clockFrequency();
    tickClock(clock);
    EXPECT_EQ(clock.showTime, 3 + static_cast<double>(0.1f));
    const int64_t now = clockCounter();
    restartCounter(clock);
    EXPECT_GE(clock.lastCounter, now); // what was before is forgotten
}

TEST(Output, NumbersFrames) {
    const struct {
        const char* pattern;
        long long number;
        const char* path;
    } cases[] = {
        {"f-%04d.png", 42, "f-0042.png"}, {"%02d/f.png", 12345, "12345/f.png"}, {"%0d", 3, "3"},
        {"%%%d%%d", 5, "%5%d"},           {"100%%.png", 7, "100%.png"},
    };
    std::string path;
    bool hasNumber = false;
    for (const auto& c : cases) {
        ASSERT_TRUE(framePath(c.pattern, c.number, path, hasNumber)) << c.pattern;
        EXPECT_EQ(path, c.path);
    }
    EXPECT_FALSE(hasNumber); // "%%" is none
    for (const char* pattern : {"%010d", "%99999999999d", "%4d", "%d-%d", "%n", "%-4d", "f%", "%04", "%*d"}) {
        EXPECT_FALSE(framePath(pattern, 1, path, hasNumber)) << pattern;
    }
}

} // namespace
