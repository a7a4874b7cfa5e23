#include "timeline/moment.h"

#include <gtest/gtest.h>

#include <deque>

namespace {

struct Row {
    const char* id;
    float start = 0.0f, duration = 0.0f;
    bool overlay = false;
    int layer = 0;
    int scene = -1; // index into the scenes
};

// A timeline made by hand, with what the loader would have read for it.
struct TestShow {
    explicit TestShow(const std::vector<Row>& rows) {
        for (const Row& row : rows) {
            sources.emplace_back().id = row.id;
            timeline.entries.push_back({&sources.back(), row.start, row.duration, row.layer, row.overlay, row.scene});
        }
    }

    std::deque<TimelineEntry> sources;
    Timeline timeline;
};

std::string idsOf(const std::vector<const RuntimeEntry*>& entries) {
    std::string ids;
    for (const RuntimeEntry* entry : entries) ids += entry ? entry->entry->id : "none";
    return ids;
}

TEST(Playback, ChoosesTheBase) {
    const struct {
        const char* rule;
        std::vector<Row> rows;
        float t;
        const char* id;
    } cases[] = {
        {"one that plays before a later one that has ended", {{"a", 0, 9}, {"b", 2, 1}}, 5, "a"},
        {"at equal start the first in the list", {{"a", 1, 1}, {"b", 1, 9}, {"c", 1, 9}}, 5, "b"},
        {"latest start that has ended", {{"a", 0, 9}, {"b", 2, 3}, {"c", 20, 1}}, 10, "b"},
        {"the first of those that have ended", {{"a", 2, 1}, {"b", 2, 3}}, 10, "a"},
        {"earliest before all starts", {{"a", 3, 1}, {"b", 2, 1}, {"c", 2, 1}}, 1, "b"},
        {"overlays are no base", {{"a", 0, 9, true}}, 3, "none"},
    };
    for (const auto& c : cases) {
        TestShow show(c.rows);
        EXPECT_EQ(idsOf({selectBaseEntry(show.timeline, c.t)}), c.id) << c.rule;
    }
    // Each side of a transition has its own.
    TestShow show({{"a", 0, 9, false, 0, 0}, {"b", 5, 9, false, 0, 1}, {"c", 6, 9}});
    EXPECT_EQ(idsOf({selectBaseEntry(show.timeline, 7, 0), selectBaseEntry(show.timeline, 7, 1)}), "ab");
}

TEST(Playback, StacksTheOverlaysOfATimeByLayerThenByStart) {
    // At 4 s: a start counts in, an end counts out, and without a duration there is none.
    TestShow show({{"e", 1, 9, true, 3, 1},
                   {"d", 0, 9, true, 3},
                   {"x", 0, 9},
                   {"y", 0, 4, true},
                   {"c", 0, 9, true, 3, 0},
                   {"b", 4, -1, true, -1, 1},
                   {"z", 4.1f, 9, true},
                   {"a", 1, 0, true, -2}});
    std::vector<const RuntimeEntry*> overlays(3, nullptr); // what it held before is gone
    selectOverlays(show.timeline, 4, overlays);
    EXPECT_EQ(idsOf(overlays), "abdce");
    selectOverlays(show.timeline, 4, overlays, 1);
    EXPECT_EQ(idsOf(overlays), "be");
}

// A rendering's clocks count frames, so that they are right after hours; a window's add deltas.
TEST(Clocks, RunOnlyWhileDrawnAndLoseNothing) {
    TestShow show({{"a", 0, 0}, {"b", 600, 0, true}});
    show.sources[0].timeScale = 3.0f;
    for (const double rate : {24.0, 60.0}) {
        Clocks clocks;
        clocks.rate = rate;
        resetClocks(clocks, show.timeline);
        PlayScratch scratch;
        Moment moment;
        const int frames = static_cast<int>(610 * rate);
        for (int k = 0; k <= frames; ++k) {
            resolveMoment(show.timeline, static_cast<float>(k / rate), false, scratch, moment);
            runClocks(clocks, show.timeline, k ? static_cast<float>(1.0 / rate) : 0.0f, moment);
        }
        ASSERT_EQ(moment.entries.size(), 2u);
        EXPECT_EQ(moment.entries[0].time, 3.0 * frames / rate);
        EXPECT_EQ(moment.entries[0].frame, frames + 1);
        EXPECT_EQ(moment.entries[1].time, 10.0 + 1.0 / rate) << "from the frame before its first";
    }
    // A jump begins anew from where the entry would be; a negative time scale runs back.
    const struct {
        float seconds, timeScale;
        double time;
        int frame;
    } cases[] = {{4, 0.5f, 2, 240}, {-1, 1, 0, 0}, {3, -1, -3, 180}, {0.025f, 1, 0.025f, 2}, {1e30f, 0, 0, 2147483520}};
    for (const auto& c : cases) {
        EntryClock clock;
        clock.steps = clock.frame = 99;
        seekClock(clock, c.timeScale, c.seconds);
        EXPECT_EQ(clockTime(clock, {}, c.timeScale), c.time) << c.seconds;
        EXPECT_EQ(clock.frame, c.frame) << c.seconds;
    }
    EntryClock window;
    for (int i = 0; i < 36000; ++i) advanceClock(window, {}, 1.0f / 60.0f);
    EXPECT_NEAR(clockTime(window, {}, 1.0f), 600.0, 1e-4);
}

} // namespace
