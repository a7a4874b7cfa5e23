#include "app/steering.h"

#include "app/loop.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "platform/shell_state.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kJustReached = 0.05f; // a scene that has just been jumped to counts as current
constexpr float kRestartAfter = 1.0f; // seconds of a scene after which Left restarts it
constexpr float kBeforeEnd = 0.001f;  // seconds; the range's end itself would trigger the end rule
constexpr float kLeastSeek = 0.001f;  // seconds

} // namespace

SceneStep stepScene(const Timeline& timeline, float t, int step) {
    const std::vector<SceneSpan>& scenes = timeline.scenes;
    if (scenes.empty()) return {"", t};
    size_t current = 0;
    while (current + 1 < scenes.size() && scenes[current + 1].start <= t + kJustReached) ++current;

    size_t target = current;
    if (step > 0) {
        target = std::min(current + 1, scenes.size() - 1);
    } else if (t - scenes[current].start <= kRestartAfter && current > 0) {
        target = current - 1;
    }
    return {scenes[target].name, scenes[target].start};
}

float lastVisibleTime(const VisualRange& range) {
    // Late in a very long show a float has no room for the millisecond.
    const float last = std::min(range.end - kBeforeEnd, std::nextafter(range.end, range.start));
    return last > range.start ? last : range.start;
}

float clampToRange(const VisualRange& range, float t) {
    return std::max(std::min(t, lastVisibleTime(range)), range.start);
}

void seekClocks(Clocks& clocks, const Timeline& timeline, float t) {
    for (size_t i = 0; i < timeline.entries.size(); ++i) {
        const RuntimeEntry& entry = timeline.entries[i];
        seekClock(clocks.entries[i], entry.entry->timeScale, t - entry.start);
    }
}

void seekTo(Player& player, const VisualRange& range, float t) {
    const float target = clampToRange(range, t);
    jumpClock(player.clock, static_cast<double>(target));
    seekClocks(player.clocks, playingTimeline(player), target);
    player.log.lastKey.clear();
    const double musicOffset = static_cast<double>(player.config.startOffset);
    jumpMusic(player.recorder, musicFrame(musicOffset, static_cast<double>(target)));
    restartCounter(player.clock);
}

void applyControls(Player& player, const VisualRange& range) {
    ShellState& shell = shellState();
    const bool seeks = std::fabs(shell.pendingSeekSeconds) > kLeastSeek;
    if (shell.pendingSceneStep == 0 && !seeks) return;

    float t = static_cast<float>(player.clock.showTime);
    std::string scene;
    if (shell.pendingSceneStep != 0) {
        const SceneStep step = stepScene(playingTimeline(player), t, shell.pendingSceneStep);
        t = step.time;
        scene = step.scene;
        shell.pendingSceneStep = 0;
    }
    if (seeks) {
        t += shell.pendingSeekSeconds;
        shell.pendingSeekSeconds = 0.0f;
    }
    seekTo(player, range, t);
    t = static_cast<float>(player.clock.showTime);
    if (player.audio.ready && !playFrom(player.audio, static_cast<double>(t))) {
        logLine("[SEEK] Audio seek failed; continuing visual-only.\n");
    }

    if (scene.empty()) {
        activeScenes(playingTimeline(player), t, player.scenes);
        if (!player.scenes.empty()) scene = playingTimeline(player).scenes[player.scenes.back()].name;
    }
    logLine("[SEEK] t=%.3fs scene=%s\n", static_cast<double>(t), orNone(scene));
}

void pressScriptedKeys(Player& player) {
    const std::vector<ScriptedKey>& keys = player.options.keys;
    while (player.nextKey < keys.size() && keys[player.nextKey].time <= player.clock.elapsed) {
        pressKey(keys[player.nextKey++].key);
    }
}
