#include "support/log_capture.h"
#include "timeline/playback.h"

#include <gtest/gtest.h>

#include <deque>
#include <string>
#include <vector>

namespace {

// A timeline made by hand, with what the loader would have read for it.
struct TestShow {
    std::deque<TimelineEntry> sources;
    Timeline timeline;
};

SceneSpan spanOf(const char* name, float start, float end) {
    SceneSpan span;
    span.name = name;
    span.start = start;
    span.end = end;
    return span;
}

struct Row {
    const char* id;
    float start = 0.0f, duration = 0.0f;
    bool overlay = false;
    int layer = 0;
    int scene = -1; // index into the scenes
};

// The scenes' spans are those of an "A" from 0 s to 10 s and a "B" from 5 s to 20 s.
void fill(TestShow& show, const std::vector<Row>& rows) {
    show.timeline.scenes = {spanOf("A", 0, 10), spanOf("B", 5, 20)};
    for (const Row& row : rows) {
        TimelineEntry& source = show.sources.emplace_back();
        source.id = row.id;
        source.type = "fx";
        if (row.scene >= 0) source.scene = show.timeline.scenes[row.scene].name;
        RuntimeEntry& entry = show.timeline.entries.emplace_back();
        entry.entry = &source;
        entry.start = row.start;
        entry.duration = row.duration;
        entry.layer = row.layer;
        entry.overlay = row.overlay;
        entry.scene = row.scene;
    }
}

std::string idOf(const RuntimeEntry* entry) {
    return entry ? entry->entry->id : "none";
}

std::string idsOf(const std::vector<RuntimeEntry*>& entries) {
    std::string ids;
    for (const RuntimeEntry* entry : entries) ids += idOf(entry);
    return ids;
}

std::string logOf(TestShow& show, PlayLog& log, float t) {
    PlayState state;
    resolvePlayState(show.timeline, t, state);
    const LogCapture capture;
    logPlayState(log, show.timeline, t, state);
    return capture.text();
}

TEST(Playback, CountsTheStartInAndTheEndOut) {
    const struct { float start, duration, t; bool active; } cases[] = {
        {1, 2, 0.999f, false}, {1, 2, 1, true}, {1, 2, 2.999f, true}, {1, 2, 3, false}, {1, 0, 1e9f, true},
        {1, -4, 1e9f, true}, {1, -4, 0, false}, {-2, 1, -1.5f, true}, {0.1f, 0.2f, 0.1f + 0.2f, false},
    };
    for (const auto& c : cases) {
        RuntimeEntry entry;
        entry.start = c.start;
        entry.duration = c.duration;
        EXPECT_EQ(isTimeActive(entry, c.t), c.active) << c.start << " for " << c.duration << " at " << c.t;
    }
}

TEST(Playback, ChoosesTheBase) {
    const struct { const char* rule; std::vector<Row> rows; float t; const char* id; } cases[] = {
        {"latest start that plays", {{"a", 0, 9}, {"b", 2, 9}, {"c", 4, 9}}, 3, "b"},
        {"one that plays before a later one that has ended", {{"a", 0, 9}, {"b", 2, 1}}, 5, "a"},
        {"open-ended entries play on", {{"a", 0, 9}, {"b", 2, 0}}, 100, "b"},
        {"at equal start the first in the list", {{"a", 1, 1}, {"b", 1, 9}, {"c", 1, 9}}, 5, "b"},
        {"latest start that has ended", {{"a", 0, 9}, {"b", 2, 3}, {"c", 20, 1}}, 10, "b"},
        {"the first of those that have ended", {{"a", 2, 1}, {"b", 2, 3}}, 10, "a"},
        {"at the very end", {{"a", 0, 4}}, 4, "a"},
        {"earliest before all starts", {{"a", 3, 1}, {"b", 2, 1}, {"c", 2, 1}}, 1, "b"},
        {"overlays are no base", {{"a", 0, 1}, {"b", 2, 9, true}}, 3, "a"},
        {"nothing but overlays", {{"a", 0, 9, true}}, 3, "none"},
    };
    for (const auto& c : cases) {
        TestShow show;
        fill(show, c.rows);
        EXPECT_EQ(idOf(selectBaseEntry(show.timeline, c.t)), c.id) << c.rule;
    }
    TestShow show; // each side of a transition has its own
    fill(show, {{"a", 0, 9, false, 0, 0}, {"b", 5, 9, false, 0, 1}, {"c", 6, 9}});
    EXPECT_EQ(idOf(selectBaseEntry(show.timeline, 7)), "c");
    EXPECT_EQ(idOf(selectBaseEntry(show.timeline, 7, 0)), "a");
    EXPECT_EQ(idOf(selectBaseEntry(show.timeline, 7, 1)), "b");
}

TEST(Playback, StacksOverlaysByLayerThenByStart) {
    TestShow show;
    fill(show, {{"e", 1, 9, true, 3, 1}, {"d", 0, 9, true, 3}, {"x", 0, 9}, {"y", 0, 1, true}, {"c", 0, 9, true, 3, 0},
                {"b", 2, 0, true, -1, 1}, {"z", 5, 9, true}});
    std::vector<RuntimeEntry*> overlays(3, nullptr); // what it held before is gone
    selectOverlays(show.timeline, 4, overlays);
    EXPECT_EQ(idsOf(overlays), "bdce");
    selectOverlays(show.timeline, 4, overlays, 1);
    EXPECT_EQ(idsOf(overlays), "be");
}

TEST(Playback, ListsTheScenesThatPlay) {
    TestShow show;
    fill(show, {{"b", 5, 15, true, 0, 1}, {"n", 0, 0}, {"a", 0, 2, false, 0, 0}, {"a", 4, 6, false, 0, 0}});
    const std::pair<float, std::vector<int>> cases[] = {{-1, {}}, {1, {0}}, {3, {}}, {5, {0, 1}}, {10, {1}}, {20, {}}};
    for (const auto& [t, wanted] : cases) {
        std::vector<int> scenes = {7};
        activeScenes(show.timeline, t, scenes);
        EXPECT_EQ(scenes, wanted) << t;
    }
}

TEST(Playback, LogsAStateWhenItChanges) {
    TestShow show;
    fill(show, {{"intro", 0, 6, false, 0, 0}, {"", 5, 15, false, 0, 1}, {"title", 1, 2.5f, true, 2},
                {"glow", 1, 0, true, -1, 1}, {"late", 3.5f, 1, true, 2}});
    show.sources[1].type = "";
    const std::string intro = " scene=A sceneIn=0.000s sceneOut=10.000s base=intro type=fx entryIn=0.000s entryOut=6.000s";
    const std::string glow = "       [OVR] scene=B id=glow type=fx entryIn=1.000s entryOut=1.000s dur=0.000s layer=-1\n";
    const std::string title = "       [OVR] scene=(none) id=title type=fx entryIn=1.000s entryOut=3.500s dur=2.500s layer=2\n";
    PlayLog log;
    EXPECT_EQ(logOf(show, log, 0.5f), "[PLAY] t=0.500s" + intro + " overlays=0\n");
    EXPECT_EQ(logOf(show, log, 0.75f), "");
    EXPECT_EQ(logOf(show, log, 1), "[PLAY] t=1.000s" + intro + " overlays=2\n" + glow + title);
    EXPECT_EQ(logOf(show, log, 4), ""); // another overlay, but as many as before
    EXPECT_EQ(logOf(show, log, 5), "[PLAY] t=5.000s scene=B sceneIn=5.000s sceneOut=20.000s base=(none) type=(none) "
                                   "entryIn=5.000s entryOut=20.000s overlays=1\n" + glow);
    log.lastKey.clear();
    EXPECT_NE(logOf(show, log, 5), ""); // as after a seek
}

TEST(Playback, MeasuresScenesOfTheList) {
    RuntimeConfig config;
    config.scenes.resize(3);
    for (const auto& [scene, delay, duration] : {std::tuple{1, -5.0f, 6.0f}, {1, 3.0f, 2.0f}, {2, 0.0f, -1.0f}}) {
        TimelineEntry& entry = config.scenes[scene].entries.emplace_back();
        entry.delay = delay; // before the scene it counts as none
        entry.duration = duration;
    }
    const std::pair<int, float> durations[] = {{-1, 0}, {0, 0}, {1, 6}, {2, 0}, {3, 0}};
    for (const auto& [scene, seconds] : durations) EXPECT_EQ(sceneDuration(config, scene), seconds) << scene;
}

} // namespace
