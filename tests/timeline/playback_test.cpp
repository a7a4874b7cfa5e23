#include "timeline/playback.h"

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
            timeline.entries.push_back(
                {&sources.back(), row.start, row.duration, row.layer, row.overlay, row.scene, {}});
        }
    }

    std::deque<TimelineEntry> sources;
    Timeline timeline;
};

std::string idsOf(const std::vector<RuntimeEntry*>& entries) {
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
    std::vector<RuntimeEntry*> overlays(3, nullptr); // what it held before is gone
    selectOverlays(show.timeline, 4, overlays);
    EXPECT_EQ(idsOf(overlays), "abdce");
    selectOverlays(show.timeline, 4, overlays, 1);
    EXPECT_EQ(idsOf(overlays), "be");
}

} // namespace
