#include "timeline/frame.h"

#include "effects/warm_up.h"
#include "foundation/text.h"

#include <algorithm>

namespace {

Draw drawOf(const MomentEntry& playing, GLuint framebuffer, int width, int height) {
    Draw draw;
    draw.framebuffer = framebuffer;
    draw.width = width;
    draw.height = height;
    draw.blending = playing.blending;
    draw.time = playing.time;
    draw.frame = playing.frame;
    draw.opacity = playing.opacity;
    return draw;
}

void drawEntries(Stage& stage, StagePart& part, const std::vector<MomentEntry>& entries, GLuint framebuffer, int width,
                 int height) {
    for (const MomentEntry& playing : entries) {
        drawEffect(stage.device, part.effects[static_cast<size_t>(playing.entry)],
                   drawOf(playing, framebuffer, width, height));
    }
}

void drawScene(Stage& stage, StagePart& part, const std::vector<MomentEntry>& entries, RenderTarget& target, int width,
               int height) {
    beginTarget(stage.device.textures, target, width, height);
    drawEntries(stage, part, entries, target.framebuffer, width, height);
}

void warmUpEntry(Stage& stage, StagePart& part, size_t index, bool isBase, DrawTarget kind, Draw draw) {
    Effect& effect = part.effects[index];
    draw.blending = isBase ? BlendMode::opaque : effect.blendMode;
    draw.opacity = effect.alpha;
    warmUpEffect(stage.device, effect, kind, draw);
}

// Scenes that pass into each other are drawn into targets meanwhile.
void warmUpForTransitions(Stage& stage, StagePart& part, const Timeline& timeline, const Draw& screen) {
    if (stage.transition.program) {
        warmUpTransition(stage.device, stage.transition, DrawTarget::screen, screen, stage.outgoing.texture,
                         stage.incoming.texture);
    }
    const std::vector<bool> overlaps = findOverlaps(timeline);
    if (!stage.transition.program || std::find(overlaps.begin(), overlaps.end(), true) == overlaps.end()) return;
    for (size_t i = 0; i < timeline.entries.size(); ++i) {
        const RuntimeEntry& entry = timeline.entries[i];
        if (entry.scene < 0 || !overlaps[static_cast<size_t>(entry.scene)]) continue;
        warmUpEntry(stage, part, i, !entry.overlay, DrawTarget::offscreen, drawInto(stage.outgoing, screen));
    }
}

} // namespace

Timeline loadTimeline(Stage& stage, const RuntimeConfig& config, int width, int height) {
    StagePart& part = stage.parts.emplace_back();
    recordLog(&part.log);
    logLine("[TIMELINE] Loading %d entries\n", static_cast<int>(config.entries.size()));
    makeEffects(stage, part, config, config.entries, LoadWords::times, width, height);
    recordLog(nullptr);
    return buildTimeline(part.entries, config);
}

Timeline loadScene(Stage& stage, const RuntimeConfig& config, int index, int width, int height) {
    const SceneSpec& scene = config.scenes[static_cast<size_t>(index)];
    StagePart& part = stage.parts.emplace_back();
    recordLog(&part.log, true);
    logLine("[SCENE %d/%d] \"%s\" (%d entries, duration=%.1fs)\n", index + 1, static_cast<int>(config.scenes.size()),
            orNone(scene.id), static_cast<int>(scene.entries.size()),
            static_cast<double>(sceneDuration(config, index)));
    makeEffects(stage, part, config, scene.entries, LoadWords::shaders, width, height);
    recordLog(nullptr);
    return buildTimeline(part.entries, config);
}

void drawMoment(Stage& stage, StagePart& part, const Moment& moment, int width, int height) {
    resetTextureUnits(stage.device.textures);
    if (!moment.inTransition) {
        drawEntries(stage, part, moment.entries, 0, width, height);
        return;
    }
    drawScene(stage, part, moment.entries, stage.outgoing, width, height);
    drawScene(stage, part, moment.incoming, stage.incoming, width, height);
    Draw mix;
    mix.width = width;
    mix.height = height;
    renderTransition(stage.device, stage.transition, mix, stage.outgoing.texture, stage.incoming.texture,
                     moment.progress, moment.look);
}

void warmUpTimeline(Stage& stage, StagePart& part, const Timeline& timeline, int width, int height) {
    resetTextureUnits(stage.device.textures);
    Draw screen;
    screen.width = width;
    screen.height = height;
    for (size_t i = 0; i < timeline.entries.size(); ++i) {
        warmUpEntry(stage, part, i, !timeline.entries[i].overlay, DrawTarget::screen, screen);
    }
    warmUpForTransitions(stage, part, timeline, screen);
    resetTextureUnits(stage.device.textures);
}

void warmUpScene(Stage& stage, StagePart& part, const Timeline& timeline, int width, int height) {
    resetTextureUnits(stage.device.textures);
    Draw screen;
    screen.width = width;
    screen.height = height;
    for (size_t i = 0; i < timeline.entries.size(); ++i) {
        const bool isBase = i == 0 && !timeline.entries[i].overlay;
        warmUpEntry(stage, part, i, isBase, DrawTarget::screen, screen);
    }
}
