#include "app/loop.h"
#include "app/steering.h"
#include "foundation/log.h"
#include "platform/files.h"
#include "platform/shell_state.h"

#include <algorithm>

namespace {

void endTimeline(Player& player, const VisualRange& range) {
    logLine("[TIMELINE] End reached at %.3fs; exiting because loop=false.\n", static_cast<double>(range.end));
    const float t = lastVisibleTime(range);
    resolvePlayState(playingTimeline(player), t, player.scratch.state);
    logFinalFrame(playingTimeline(player), t, player.scratch.state);
    stopRunning("native timeline end");
}

void wrapTimeline(Player& player, const VisualRange& range) {
    const double t = wrapTime(range, player.clock.showTime);
    player.passesTime += player.clock.showTime - t;
    jumpClock(player.clock, t);
    if (player.audio.ready && playFrom(player.audio, t)) logLine("[AUDIO] Loop seek to %.3fs\n", t);
    beginPart(player, 0);
    player.log.lastKey.clear();
}

// Ends or wraps a timeline that has reached its end; false when the run is over.
bool applyEnd(Player& player, const VisualRange& range) {
    if (range.duration <= 0.0f || !hasReached(player, player.clock.showTime, static_cast<double>(range.end)))
        return true;
    if (!player.config.loop) {
        endTimeline(player, range);
        return false;
    }
    if (isOffline(player)) return false; // one pass
    wrapTimeline(player, range);
    return true;
}

// Two scenes that overlap pass into each other; everything else is a plain frame.
void drawPlaying(Player& player, float t, float delta) {
    const Timeline& timeline = playingTimeline(player);
    resolveMoment(timeline, t, player.stage.transition.program, player.scratch, player.moment);
    if (player.moment.inTransition) {
        logTransition(player.log, timeline, t, player.scratch.transition);
    } else {
        logPlayState(player.log, timeline, t, player.scratch.state);
    }
    drawPlayerMoment(player, delta);
}

void drawFrame(Player& player, const VisualRange& range, float delta) {
    const bool hasRange = range.start < range.end;
    const bool isPast = hasRange && player.clock.showTime >= static_cast<double>(range.end);
    const float t = hasRange ? std::min(showTime(player), lastVisibleTime(range)) : showTime(player);

    clearFrame();
    drawPlaying(player, t, isPast ? 0.0f : delta);
    finishFrame(player);
}

// Music and picture meet here, at seeks and at loops; in between each keeps its own time.
void startMusic(Player& player, const VisualRange& range) {
    if (!player.audio.ready) return;
    const double duration = static_cast<double>(player.audio.duration);
    logLine("[TIMELINE] BASS audio duration=%.3fs; visual/audio delta=%.3fs\n", duration,
            static_cast<double>(range.end) - duration);
    const std::optional<double>& start = player.options.start;
    const float t = start ? clampToRange(range, static_cast<float>(*start)) : range.start;
    if (playFrom(player.audio, static_cast<double>(t))) {
        logLine("[AUDIO] Playback sync enabled (duration=%.3fs, visual clock=delta time)\n", duration);
    }
}

// Loads the timeline, announces it and starts the music.
VisualRange prepareTimeline(Player& player) {
    const int width = shellState().clientWidth, height = shellState().clientHeight;
    keepListings(true);
    player.timelines.push_back(loadTimeline(player.stage, player.config, width, height));
    keepListings(false);
    resetClocks(player.clocks, player.timelines.front());
    makeTransition(player.stage, player.config.baseDir, width, height);
    warmUpTimeline(player.stage, player.stage.parts.front(), player.timelines.front(), width, height);
    const VisualRange range = visualRange(player.config);
    logLine("[TIMELINE] Visual range %.3fs -> %.3fs (duration=%.3fs)\n", static_cast<double>(range.start),
            static_cast<double>(range.end), static_cast<double>(range.duration));
    startMusic(player, range);
    logLine("[CONTROLS] Right/Left: next/previous scene | Up/Down: +/-10s | ESC: exit\n");
    return range;
}

} // namespace

void playTimeline(Player& player) {
    const VisualRange range = prepareTimeline(player);
    player.clock = startClock(player, static_cast<double>(range.start));
    player.clocks.rate = player.clock.fps;
    if (player.options.start) seekTo(player, range, static_cast<float>(*player.options.start));
    while (beginFrame(player)) {
        applyControls(player, range);
        if (stopTimeReached(player) || !applyEnd(player, range)) break;
        drawFrame(player, range, player.clock.delta);
    }
}

void renderTimelineStills(Player& player) {
    const VisualRange range = prepareTimeline(player);
    for (const double time : player.options.stills) {
        pumpMessages(player.surface);
        if (!shellState().running) return;
        seekTo(player, range, static_cast<float>(time));
        resetEffects(player.stage.parts.front());
        drawFrame(player, range, 0.0f);
    }
}
