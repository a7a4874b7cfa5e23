#include "app/loop.h"
#include "platform/files.h"
#include "platform/shell_state.h"
#include "timeline/frame.h"

#include <algorithm>

namespace {

// Makes the effects of every scene; what is to be said of a scene is said when it begins.
void loadScenes(Player& player) {
    const int width = shellState().clientWidth, height = shellState().clientHeight;
    keepListings(true);
    for (size_t i = 0; i < player.config.scenes.size(); ++i) {
        player.timelines.push_back(loadScene(player.stage, player.config, static_cast<int>(i), width, height));
        warmUpScene(player.stage, player.stage.parts[i], player.timelines[i], width, height);
    }
    keepListings(false);
}

void beginScene(Player& player, int index) {
    beginPart(player, static_cast<size_t>(index));
    jumpClock(player.clock, 0.0);
}

// A time on the list of scenes, each following the one before it.
struct ScenePosition {
    int index = 0;
    double time = 0.0;   // seconds into the scene
    double before = 0.0; // seconds of the scenes before it
};

// Past the end the last scene goes on.
ScenePosition findScene(const RuntimeConfig& config, double time) {
    ScenePosition position;
    const int last = static_cast<int>(config.scenes.size()) - 1;
    while (position.index < last) {
        const double duration = static_cast<double>(sceneDuration(config, position.index));
        if (duration <= 0.0 || time < position.before + duration) break;
        position.before += duration;
        ++position.index;
    }
    position.time = std::max(0.0, time - position.before);
    return position;
}

// Moves to a position in the scene that is loaded, as if the scene had played from its start.
void seekInScene(Player& player, const ScenePosition& position) {
    player.passesTime = position.before;
    jumpClock(player.clock, position.time);
    const std::vector<RuntimeEntry>& entries = playingTimeline(player).entries;
    for (size_t i = 0; i < entries.size(); ++i) {
        const TimelineEntry& entry = *entries[i].entry;
        seekClock(player.clocks.entries[i], entry.timeScale, showTime(player) - std::max(0.0f, entry.delay));
    }
    restartCounter(player.clock);
}

// Moves on when the scene is over; false when the run is. A scene begins at its time 0, but offline where
// the frame's time falls: frames are a fixed step apart.
bool advanceScene(Player& player, int& index) {
    const float duration = sceneDuration(player.config, index);
    if (duration <= 0.0f || !hasReached(player, player.clock.showTime, static_cast<double>(duration))) return true;
    const double rest = isOffline(player) ? std::max(0.0, player.clock.showTime - static_cast<double>(duration)) : 0.0;
    player.passesTime += static_cast<double>(duration);
    if (++index == static_cast<int>(player.config.scenes.size())) {
        if (!player.config.loop) {
            stopRunning("legacy timeline end");
            return false;
        }
        if (isOffline(player)) return false; // one pass
        index = 0;
    }
    beginScene(player, index);
    jumpClock(player.clock, rest);
    return advanceScene(player, index); // a scene may be shorter than the step
}

void drawFrame(Player& player, float delta) {
    clearFrame();
    resolveSceneMoment(playingTimeline(player), showTime(player), player.moment);
    drawPlayerMoment(player, delta);
    finishFrame(player);
}

} // namespace

void playScenes(Player& player) {
    const ScenePosition start = findScene(player.config, player.options.start.value_or(0.0));
    int index = start.index;
    loadScenes(player); // before the music sounds: the picture would lag behind by as long as that takes
    if (player.audio.ready) playFrom(player.audio, start.before + start.time);
    beginScene(player, index);
    player.clock = startClock(player, 0.0);
    player.clocks.rate = player.clock.fps;
    if (player.options.start) seekInScene(player, start);
    while (beginFrame(player)) {
        if (stopTimeReached(player) || !advanceScene(player, index)) break;
        drawFrame(player, player.clock.delta);
    }
}

void renderSceneStills(Player& player) {
    loadScenes(player);
    int loaded = -1;
    for (const double time : player.options.stills) {
        pumpMessages(player.surface);
        if (!shellState().running) return;
        const ScenePosition position = findScene(player.config, time);
        if (position.index != loaded) beginScene(player, position.index);
        loaded = position.index;
        seekInScene(player, position);
        resetEffects(player.stage.parts[player.part]);
        drawFrame(player, 0.0f);
    }
}
