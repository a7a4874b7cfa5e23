#include "timeline/moment.h"

#include <algorithm>

namespace {

MomentEntry momentOf(const Timeline& timeline, const RuntimeEntry& entry, bool isBase) {
    MomentEntry moment;
    moment.entry = static_cast<int>(&entry - timeline.entries.data());
    moment.opacity = entry.entry->alpha;
    moment.blending = isBase ? BlendMode::opaque : entry.entry->blendMode;
    return moment;
}

void listEntries(const Timeline& timeline, const PlayState& state, std::vector<MomentEntry>& entries) {
    entries.clear();
    if (state.base) entries.push_back(momentOf(timeline, *state.base, true));
    for (const RuntimeEntry* overlay : state.overlays) entries.push_back(momentOf(timeline, *overlay, false));
}

} // namespace

void resolveMoment(const Timeline& timeline, float t, bool canMix, PlayScratch& scratch, Moment& moment) {
    moment.inTransition = canMix && resolveTransition(timeline, t, scratch.transition);
    moment.incoming.clear();
    if (!moment.inTransition) {
        resolvePlayState(timeline, t, scratch.state);
        listEntries(timeline, scratch.state, moment.entries);
        return;
    }
    const TransitionState& transition = scratch.transition;
    listEntries(timeline, transition.out, moment.entries);
    listEntries(timeline, transition.in, moment.incoming);
    moment.progress = transition.progress;
    moment.look = timeline.scenes[transition.outgoing].transition;
}

void resolveSceneMoment(const Timeline& timeline, float sceneTime, Moment& moment) {
    moment.inTransition = false;
    moment.incoming.clear();
    moment.entries.clear();
    for (const RuntimeEntry& entry : timeline.entries) {
        const float start = std::max(0.0f, entry.entry->delay);
        if (sceneTime < start || (entry.duration > 0.0f && sceneTime > start + entry.duration)) continue;
        const bool isBase = !entry.overlay && &entry == timeline.entries.data();
        moment.entries.push_back(momentOf(timeline, entry, isBase));
    }
}

void runClocks(Clocks& clocks, const Timeline& timeline, float delta, Moment& moment) {
    for (std::vector<MomentEntry>* entries : {&moment.entries, &moment.incoming}) {
        for (MomentEntry& playing : *entries) {
            EntryClock& clock = clocks.entries[static_cast<size_t>(playing.entry)];
            advanceClock(clock, clocks, delta);
            playing.time = clockTime(clock, clocks,
                                     timeline.entries[static_cast<size_t>(playing.entry)].entry->timeScale);
            playing.frame = clock.frame;
        }
    }
}
