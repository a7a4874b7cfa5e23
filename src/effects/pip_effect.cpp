#include "effects/pip_effect.h"

#include "effects/composite.h"
#include "foundation/log.h"
#include "foundation/text.h"
#include "gpu/gl_functions.h"
#include "gpu/shader_pack.h"
#include "text/pictures.h"

#include <algorithm>
#include <cmath>

namespace {

enum Child { kMain, kInset };

PipCorner readCorner(const JsonValue& params) {
    std::string corner = toLower(getString(find(params, "corner"), "bottomright"));
    std::erase(corner, '-');
    std::erase(corner, '_');
    if (corner == "bottomleft") return PipCorner::bottomLeft;
    if (corner == "topright") return PipCorner::topRight;
    if (corner == "topleft") return PipCorner::topLeft;
    return PipCorner::bottomRight;
}

void loadInsetImage(const TimelineEntry& entry, Effect& effect) {
    std::string path = entry.fallbackImage;
    for (const char* key : {"image", "iChannel0"}) {
        const JsonValue& value = find(entry.params, key);
        if (value.kind != JsonKind::string) continue;
        path = resolveAssetPath(value.text, *entry.assets, entry.baseDir);
        break;
    }
    TextureInfo image;
    if (fileExists(path)) image = loadPicture(path);
    if (image.texture) {
        effect.pip.image = {image.texture, image.width, image.height, path};
    } else {
        logLine("    [WARN] PiPTexture image not found: %s\n", path.c_str());
    }
}

void createInsetChild(const TimelineEntry& entry, Effect& effect) {
    std::unique_ptr<Effect> inset = createChild(find(entry.params, "pip"), entry, "pip");
    if (isRunnable(*inset)) {
        effect.children.push_back(std::move(inset));
        return;
    }
    logLine("    [WARN] PiP child failed: type=%s\n", childType(find(entry.params, "pip")).c_str());
    releaseEffect(*inset);
}

// Opacity of the inset at a time: nothing before its delay, then its fade.
float insetAlpha(const PipBlock& pip, float t) {
    if (t < pip.delay) return 0.0f;
    const float fade = pip.fadeIn > 0.0f ? std::clamp((t - pip.delay) / pip.fadeIn, 0.0f, 1.0f) : 1.0f;
    return fade * pip.alpha;
}

} // namespace

PipBlock readPip(const JsonValue& params) {
    PipBlock pip;
    pip.scale = getBounded(find(params, "pipScale"), pip.scale, 0.05f, 1.0f);
    pip.margin = std::max(getInt(find(params, "pipMargin"), pip.margin), 0);
    pip.alpha = getBounded(find(params, "pipAlpha"), pip.alpha, 0.0f, 1.0f);
    pip.delay = getBounded(find(params, "pipDelay"), pip.delay, 0.0f, kNoBound);
    pip.fadeIn = getBounded(find(params, "pipFadeIn"), pip.fadeIn, 0.0f, kNoBound);
    pip.corner = readCorner(params);
    return pip;
}

PipRect pipRect(const PipBlock& pip, int width, int height) {
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

bool createPip(const TimelineEntry& entry, Effect& effect) {
    if (entry.params.kind != JsonKind::object) {
        logLine("    [ERROR] PiP requires params object\n");
        return false;
    }
    effect.blitProgram = borrowBlitProgram();
    if (!effect.blitProgram) return false;
    effect.children.push_back(createChild(find(entry.params, "main"), entry, "main"));
    if (!isRunnable(*effect.children[kMain])) {
        logLine("    [ERROR] PiP main child failed: type=%s\n", childType(find(entry.params, "main")).c_str());
        return false;
    }
    effect.pip = readPip(entry.params);
    if (effect.type == "piptexture") {
        loadInsetImage(entry, effect);
    } else {
        createInsetChild(entry, effect);
    }
    effect.mainProgram = kPlaceholderProgram;
    return true;
}

void drawPip(Effect& effect, int width, int height, const InputTexture* input) {
    Effect& main = *effect.children[kMain];
    propagateClock(effect, main, effect.localTime);
    renderToTarget(main, effect.childTargets[kMain], width, height, input);
    drawPicture(effect.blitProgram, effect.childTargets[kMain].texture, 1.0f);

    const float alpha = insetAlpha(effect.pip, effect.localTime);
    if (alpha <= 0.0f) return;
    const PipRect rect = pipRect(effect.pip, width, height);
    GLuint picture = effect.pip.image.texture;
    if (effect.children.size() > kInset) {
        Effect& inset = *effect.children[kInset];
        propagateClock(effect, inset, effect.localTime);
        renderToTarget(inset, effect.childTargets[kInset], rect.width, rect.height, input);
        picture = effect.childTargets[kInset].texture;
    }
    if (!picture) return;
    const DrawBinding output = saveBinding();
    glViewport(rect.x, rect.y, rect.width, rect.height);
    setBlending(BlendMode::alpha);
    drawPicture(effect.blitProgram, picture, alpha);
    restoreBinding(output);
}
