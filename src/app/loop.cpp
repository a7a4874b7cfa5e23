#include "app/loop.h"

#include "app/steering.h"
#include "platform/shell_state.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr double kFrameTolerance = 1e-3; // frames
}

VisualRange visualRange(const RuntimeConfig& config) {
    VisualRange range;
    if (config.entries.empty()) return range;
    range.start = config.entries.front().start; // sorted by start
    for (const TimelineEntry& entry : config.entries) range.end = std::max(range.end, entry.start + entry.duration);
    range.duration = std::max(0.0f, range.end - range.start);
    return range;
}

double showEnd(const RuntimeConfig& config) {
    if (config.nativeRuntime) {
        const VisualRange range = visualRange(config);
        return range.duration > 0.0f ? static_cast<double>(range.end) : 0.0;
    }
    double end = 0.0;
    for (size_t i = 0; i < config.scenes.size(); ++i) {
        const double duration = static_cast<double>(sceneDuration(config, static_cast<int>(i)));
        if (duration <= 0.0) return 0.0;
        end += duration;
    }
    return end;
}

bool isOffline(const Player& player) {
    return player.recorder.active;
}

float showTime(const Player& player) {
    return static_cast<float>(player.clock.showTime);
}

RunClock startClock(const Player& player, double time) {
    RunClock clock = startClock(time, isOffline(player) ? player.options.fps : 0.0);
    // Where no display is nothing else keeps the pace.
    if (player.options.headless && !isOffline(player)) clock.pace = player.options.fps;
    return clock;
}

bool beginFrame(Player& player) {
    pumpMessages(player.surface);
    if (!shellState().running) return false;
    tickClock(player.clock);
    pressScriptedKeys(player);
    return shellState().running;
}

bool stopTimeReached(const Player& player) {
    return hasReached(player, player.passesTime + player.clock.showTime, player.stopTime);
}

bool hasReached(const Player& player, double time, double end) {
    if (!isOffline(player)) return time >= end;
    // A show of D seconds has D x fps frames, whatever its floats lost when start and duration were added.
    const float last = static_cast<float>(end);
    const double lost = 2.0 * static_cast<double>(std::nextafter(last, std::numeric_limits<float>::max()) - last);
    return time >= end - std::max(lost, kFrameTolerance / player.clock.fps);
}

double wrapTime(const VisualRange& range, double time) {
    // In the arithmetic of hasReached: what counts as the end there must leave a pass behind here. The range's own
    // length will not do, it was rounded to a float once more.
    const double start = static_cast<double>(range.start);
    return start + std::fmod(std::max(0.0, time - start), static_cast<double>(range.end) - start);
}

void clearFrame() {
    glViewport(0, 0, shellState().clientWidth, shellState().clientHeight);
    glClearColor(0.0f, 0.0f, 0.0f, 1.0f);
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    glDisable(GL_DEPTH_TEST);
}

void finishFrame(Player& player) {
    if (!isOffline(player)) {
        presentFrame(player.surface);
        while (shellState().running && !awaitFrame(player.clock)) pumpMessages(player.surface);
    } else if (!recordFrame(player.recorder)) {
        shellState().running = false;
    }
}

const Timeline& playingTimeline(const Player& player) {
    return player.timelines[player.part];
}

void beginPart(Player& player, size_t part) {
    player.part = part;
    logAgain(player.stage.parts[part].log);
    resetEffects(player.stage.parts[part]);
    resetClocks(player.clocks, playingTimeline(player));
}

void drawPlayerMoment(Player& player, float delta) {
    runClocks(player.clocks, playingTimeline(player), delta, player.moment);
    drawMoment(player.stage, player.stage.parts[player.part], player.moment, shellState().clientWidth,
               shellState().clientHeight);
}
