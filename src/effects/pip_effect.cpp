#include "effects/pip_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/shader_pack.h"
#include "picture/pictures.h"

#include <algorithm>
#include <cmath>

namespace {

enum Child { kMain, kInset };

void loadInsetImage(const Materials& materials, const std::string& path, Effect& effect) {
    TextureInfo image;
    if (fileExists(path)) image = loadPicture(materials.device.textures, path);
    if (image.texture) {
        effect.pipImage = {image.texture, image.width, image.height, path};
    } else {
        logLine("    [WARN] PiPTexture image not found: %s\n", path.c_str());
    }
}

void createInsetChild(const Materials& materials, const TimelineEntry& description, Effect& effect) {
    std::unique_ptr<Effect> inset = createChild(materials, description);
    if (isRunnable(*inset)) {
        effect.children.push_back(std::move(inset));
        return;
    }
    logLine("    [WARN] PiP child failed: type=%s\n", orNone(description.type));
    releaseEffect(*inset);
}

// Opacity of the inset at a time: nothing before its delay, then its fade.
float insetAlpha(const PipParams& pip, float t) {
    if (t < pip.delay) return 0.0f;
    const float fade = pip.fadeIn > 0.0f ? std::clamp((t - pip.delay) / pip.fadeIn, 0.0f, 1.0f) : 1.0f;
    return fade * pip.alpha;
}

} // namespace

PipRect pipRect(const PipParams& pip, int width, int height) {
    const auto scaled = [&](int side) {
        return std::max(1, static_cast<int>(std::lroundf(static_cast<float>(side) * pip.scale)));
    };
    PipRect rect;
    rect.width = scaled(width);
    rect.height = scaled(height);
    const bool left = pip.corner == PipCorner::bottomLeft || pip.corner == PipCorner::topLeft;
    const bool top = pip.corner == PipCorner::topLeft || pip.corner == PipCorner::topRight;
    // In 64 bits: a margin may be as large as an integer gets.
    const int64_t right = int64_t{width} - pip.margin - rect.width;
    const int64_t upper = int64_t{height} - pip.margin - rect.height;
    const auto place = [](int64_t at, int most) {
        return static_cast<int>(std::clamp<int64_t>(at, 0, std::max(most, 0)));
    };
    rect.x = place(left ? pip.margin : right, width - rect.width);
    rect.y = place(top ? upper : pip.margin, height - rect.height);
    return rect;
}

bool createPip(const Materials& materials, const TimelineEntry& entry, Effect& effect) {
    if (entry.children.empty()) {
        logLine("    [ERROR] PiP requires params object\n");
        return false;
    }
    if (!createBlit(materials.device, effect)) return false;
    effect.children.push_back(createChild(materials, entry.children[kMain]));
    if (!isRunnable(*effect.children[kMain])) {
        logLine("    [ERROR] PiP main child failed: type=%s\n", orNone(entry.children[kMain].type));
        return false;
    }
    effect.pip = paramsOf<PipParams>(entry);
    if (effect.pip.insetIsImage) {
        loadInsetImage(materials, effect.pip.image.empty() ? materials.show.fallbackImagePath : effect.pip.image,
                       effect);
    } else {
        createInsetChild(materials, entry.children[kInset], effect);
    }
    return true;
}

void drawPip(Device& device, Effect& effect, const Draw& draw) {
    renderChild(device, *effect.children[kMain], effect.childTargets[kMain], draw, draw.time);
    beginDraw(draw);
    drawPicture(device, effect, effect.childTargets[kMain].texture, 1.0f);

    const float alpha = insetAlpha(effect.pip, static_cast<float>(draw.time));
    if (alpha <= 0.0f) return;
    const PipRect rect = pipRect(effect.pip, draw.width, draw.height);
    GLuint picture = effect.pipImage.texture;
    if (effect.children.size() > kInset) {
        renderChild(device, *effect.children[kInset], effect.childTargets[kInset], rect.width, rect.height, draw,
                    draw.time);
        picture = effect.childTargets[kInset].texture;
    }
    if (!picture) return;
    Draw inset = draw;
    inset.blending = BlendMode::alpha;
    beginDraw(inset);
    glViewport(rect.x, rect.y, rect.width, rect.height);
    drawPicture(device, effect, picture, alpha);
    glViewport(0, 0, draw.width, draw.height);
}
