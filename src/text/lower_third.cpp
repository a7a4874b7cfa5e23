#include "text/lower_third.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr float kReferenceHeight = 1080.0f;
constexpr float kMarginX = 0.05f, kMarginY = 0.085f; // shares of the output: televisions cut less
constexpr float kMostHeight = 0.8f;                  // share of the output that panel and badge take
constexpr size_t kMaxTitleLines = 4, kMaxSubtitleLines = 12;

// Pixels of the reference height.
constexpr float kMinPanelWidth = 420.0f;
constexpr float kRuleGap = 22.0f, kRuleWidth = 2.0f;
constexpr float kShadowRadius = 34.0f, kShadowDrop = 8.0f, kShadowAlpha = 0.4f;
constexpr float kTextTravel = 70.0f; // of the texts within the panel

// The order in which the parts come: shares of the entrance.
constexpr float kPartLength = 0.6f;
constexpr float kPanelDelay = 0.0f, kAccentDelay = 0.08f, kTitleDelay = 0.16f, kRuleDelay = 0.22f;
constexpr float kSubtitleDelay = 0.28f, kBadgeDelay = 0.4f;

constexpr CaptionColor kDarkText = {0.03f, 0.04f, 0.07f, 1.0f};

bool hasArea(const CaptionRect& rect) {
    return rect.x1 > rect.x0 && rect.y1 > rect.y0;
}

// Of the room beside a thing, how much lies on its left.
float shareOf(CaptionSide side) {
    return side == CaptionSide::left ? 0.0f : side == CaptionSide::center ? 0.5f : 1.0f;
}

struct TextBlock {
    std::vector<CaptionLine> lines;
    float capPixels = 0.0f; // of lines that did not shrink
    float pitch = 0.0f;     // pixels from line to line
    float width = 0.0f;     // of the widest line
    float height = 0.0f;    // from the first line's capitals to the last one's baseline
};

TextBlock setBlock(const CaptionFont& font, const std::string& text, size_t maxLines, float capPixels, float spacing,
                   float maxWidth, const CaptionColor& color) {
    TextBlock block;
    block.capPixels = capPixels;
    block.pitch = capPixels * kCaptionLinePitch * spacing;
    for (std::string& line : captionLines(font, text, maxLines)) {
        CaptionLine set;
        set.capPixels = fitCaptionLine(font, line, capPixels, maxWidth);
        set.text = std::move(line);
        set.color = color;
        block.width = std::max(block.width, captionWidth(font, set.text, set.capPixels));
        block.lines.push_back(std::move(set));
    }
    if (!block.lines.empty()) block.height = capPixels + block.pitch * static_cast<float>(block.lines.size() - 1);
    return block;
}

// Lines between `left` and `right`, the first one's capitals at `top`. A line that shrank keeps its baseline.
void placeBlock(const CaptionFont& font, TextBlock& block, CaptionSide side, float left, float right, float top) {
    for (CaptionLine& line : block.lines) {
        const float room = right - left - captionWidth(font, line.text, line.capPixels);
        line.x = left + room * shareOf(side);
        line.top = top + block.capPixels - line.capPixels;
        top += block.pitch;
    }
}

float luminance(const CaptionColor& color) {
    return 0.2126f * color.r + 0.7152f * color.g + 0.0722f * color.b;
}

// The texts before they have a place.
struct Blocks {
    TextBlock title, subtitle, label;
    float ruleSpace = 0.0f;  // height between title and subtitle
    float panelWidth = 0.0f; // 0: no panel
    float panelHeight = 0.0f;
    float badgeHeight = 0.0f; // 0: no badge
    float sideAccent = 0.0f;  // width that the accent takes of the panel
};

Blocks setBlocks(const CaptionParams& params, const CaptionFont& font, float width, float unit) {
    Blocks blocks;
    const float padding = params.padding * unit;
    const float cap = kCaptionCapPixels * unit;
    blocks.sideAccent = params.side == CaptionSide::center ? 0.0f : params.accentWidth * unit;
    const float widest = width * (1.0f - 2.0f * kMarginX);
    const float room = std::max(widest - 2.0f * padding - blocks.sideAccent, 1.0f);
    CaptionColor quiet = params.textTint;
    quiet.a *= 0.82f;
    const CaptionColor labelTint = luminance(params.labelColor) > 0.3f ? kDarkText : CaptionColor{};
    blocks.title = setBlock(font, params.title, kMaxTitleLines, cap * params.titleScale, 0.9f, room, params.textTint);
    blocks.subtitle = setBlock(font, params.subtitle, kMaxSubtitleLines, cap * params.subtitleScale,
                               params.subtitleLineSpacing, room, quiet);
    blocks.label = setBlock(font, params.label, 1, cap * params.labelScale, 1.0f, room, labelTint);
    const bool hasBoth = !blocks.title.lines.empty() && !blocks.subtitle.lines.empty();
    blocks.ruleSpace = hasBoth ? 2.0f * kRuleGap * unit : 0.0f;
    if (!blocks.label.lines.empty()) blocks.badgeHeight = 2.2f * blocks.label.capPixels;
    if (blocks.title.lines.empty() && blocks.subtitle.lines.empty()) return blocks;
    const float textWidth = std::max({blocks.title.width, blocks.subtitle.width, kMinPanelWidth * unit});
    blocks.panelWidth = std::min(textWidth + 2.0f * padding + blocks.sideAccent, widest);
    // Letters that hang below the last baseline need a little more room there.
    const float below = 0.2f * (blocks.subtitle.lines.empty() ? blocks.title : blocks.subtitle).capPixels;
    blocks.panelHeight = blocks.title.height + blocks.ruleSpace + blocks.subtitle.height + 2.0f * padding + below;
    return blocks;
}

void placePanel(LowerThird& layout, const CaptionParams& params, const Blocks& blocks) {
    const float margin = kMarginX * layout.width;
    const float x0 = margin + (layout.width - 2.0f * margin - blocks.panelWidth) * shareOf(params.side);
    const float marginY = kMarginY * layout.height;
    const float y1 = params.atTop ? marginY + blocks.badgeHeight + blocks.panelHeight : layout.height - marginY;
    layout.panel = {x0, y1 - blocks.panelHeight, x0 + blocks.panelWidth, y1};
    const float thickness = params.accentWidth * layout.unit;
    layout.accent = layout.panel;
    if (params.side == CaptionSide::left) layout.accent.x1 = layout.panel.x0 + thickness;
    if (params.side == CaptionSide::right) layout.accent.x0 = layout.panel.x1 - thickness;
    if (params.side == CaptionSide::center) layout.accent.y0 = layout.panel.y1 - 0.6f * thickness;
}

void placeTexts(LowerThird& layout, const CaptionParams& params, const CaptionFont& font, Blocks& blocks) {
    const float padding = params.padding * layout.unit;
    const bool accentLeft = params.side == CaptionSide::left;
    const float left = layout.panel.x0 + padding + (accentLeft ? blocks.sideAccent : 0.0f);
    const float right = layout.panel.x1 - padding - (accentLeft ? 0.0f : blocks.sideAccent);
    const float titleTop = layout.panel.y0 + padding;
    const float titleBottom = titleTop + blocks.title.height;
    placeBlock(font, blocks.title, params.side, left, right, titleTop);
    placeBlock(font, blocks.subtitle, params.side, left, right, titleBottom + blocks.ruleSpace);
    if (params.showLine && blocks.ruleSpace > 0.0f) {
        const float middle = titleBottom + 0.5f * blocks.ruleSpace;
        const float half = 0.5f * std::max(kRuleWidth * layout.unit, 1.0f);
        layout.rule = {left, middle - half, right, middle + half};
    }
}

void placeBadge(LowerThird& layout, const CaptionParams& params, const CaptionFont& font, Blocks& blocks) {
    if (blocks.badgeHeight <= 0.0f) return;
    const float padding = 1.1f * blocks.label.capPixels;
    const float width = blocks.label.width + 2.0f * padding;
    const float x0 = layout.panel.x0 + (layout.panel.x1 - layout.panel.x0 - width) * shareOf(params.side);
    const float y0 = layout.panel.y0 - blocks.badgeHeight;
    layout.badge = {x0, y0, x0 + width, layout.panel.y0};
    placeBlock(font, blocks.label, CaptionSide::center, x0, x0 + width,
               y0 + 0.5f * (blocks.badgeHeight - blocks.label.capPixels));
}

float easeOut(float x) {
    const float rest = 1.0f - std::clamp(x, 0.0f, 1.0f);
    return 1.0f - rest * rest * rest * rest;
}

// How far each part has come in.
struct Progress {
    float panel, accent, title, rule, subtitle, badge;
};

// The way that the panel has before it; where it has gone all of it, nothing of it is in the picture.
CaptionPose panelPose(const LowerThird& layout, const CaptionParams& params, float progress) {
    CaptionPose pose;
    const float rest = 1.0f - progress;
    const float shadow = (kShadowRadius + kShadowDrop) * layout.unit;
    const float top = hasArea(layout.badge) ? layout.badge.y0 : layout.panel.y0;
    switch (params.enter) {
    case CaptionEnter::slideLeft: pose.dx = -rest * (std::max(layout.panel.x1, layout.badge.x1) + shadow); break;
    case CaptionEnter::slideRight: pose.dx = rest * (layout.width - layout.panel.x0 + shadow); break;
    case CaptionEnter::slideUp:
        pose.dy = params.atTop ? -rest * (layout.panel.y1 + shadow) : rest * (layout.height - top + shadow);
        break;
    case CaptionEnter::fade: pose.alpha = progress; break;
    case CaptionEnter::wipe: break;
    }
    return pose;
}

// Opens a rectangle from the side that the caption stands on.
CaptionRect opened(const CaptionRect& rect, CaptionSide side, float progress) {
    const float hidden = (rect.x1 - rect.x0) * (1.0f - progress);
    const float fromLeft = hidden * shareOf(side);
    return {rect.x0 + fromLeft, rect.y0, rect.x1 - (hidden - fromLeft), rect.y1};
}

// A text moves on within the panel, which hides what sticks out.
CaptionPose textPose(const LowerThird& layout, const CaptionParams& params, const CaptionPose& panel, float progress) {
    CaptionPose pose = panel;
    const float travel = kTextTravel * layout.unit * (1.0f - progress);
    const CaptionRect& p = layout.panel;
    pose.alpha = progress;
    pose.clip = {p.x0 + panel.dx, p.y0 + panel.dy, p.x1 + panel.dx, p.y1 + panel.dy};
    switch (params.enter) {
    case CaptionEnter::slideLeft: pose.dx -= travel; break;
    case CaptionEnter::slideRight: pose.dx += travel; break;
    case CaptionEnter::slideUp: pose.dy += params.atTop ? -0.5f * travel : 0.5f * travel; break;
    case CaptionEnter::fade: break;
    case CaptionEnter::wipe: pose.clip = opened(layout.panel, params.side, progress); break;
    }
    return pose;
}

void appendPanel(std::vector<float>& vertices, const LowerThird& layout, const CaptionParams& params,
                 const Progress& progress, const CaptionPose& pose) {
    if (progress.panel <= 0.0f) return;
    const bool wipes = params.enter == CaptionEnter::wipe;
    CaptionRect panel = layout.panel;
    if (wipes) panel = opened(panel, params.side, progress.panel);
    const float drop = kShadowDrop * layout.unit;
    const float shadeAlpha = kShadowAlpha * params.panelColor.a * (wipes ? progress.panel : 1.0f);
    const CaptionColor shade = {0.0f, 0.0f, 0.0f, shadeAlpha};
    const float radius = kShadowRadius * layout.unit;
    appendSoft(vertices, {panel.x0, panel.y0 + drop, panel.x1, panel.y1 + drop}, radius, radius, shade, pose);
    appendSolid(vertices, panel, params.panelColor, pose);

    CaptionRect accent = layout.accent;
    const bool grows = params.enter != CaptionEnter::fade;
    if (grows && params.side == CaptionSide::center) accent = opened(accent, params.side, progress.accent);
    if (grows && params.side != CaptionSide::center) accent.y0 += (accent.y1 - accent.y0) * (1.0f - progress.accent);
    CaptionPose accentPose = pose;
    if (!grows) accentPose.alpha = progress.accent;
    appendSolid(vertices, accent, params.accentColor, accentPose);

    if (progress.rule <= 0.0f) return;
    CaptionPose rulePose = pose;
    rulePose.alpha = progress.rule;
    const CaptionRect rule = grows ? opened(layout.rule, params.side, progress.rule) : layout.rule;
    appendSolid(vertices, rule, params.lineColor, rulePose);
}

// The badge rises from behind the panel; fades and wipes bring it like everything else.
void appendBadge(std::vector<float>& vertices, const LowerThird& layout, const CaptionParams& params,
                 const CaptionFont& font, float progress, const CaptionPose& panel) {
    if (progress <= 0.0f || !hasArea(layout.badge)) return;
    CaptionPose pose = panel;
    CaptionRect badge = layout.badge;
    if (params.enter == CaptionEnter::fade) {
        pose.alpha = progress;
    } else if (params.enter == CaptionEnter::wipe) {
        badge = opened(badge, params.side, progress);
        pose.clip = badge;
    } else {
        pose.dy += (1.0f - progress) * (badge.y1 - badge.y0);
        pose.clip.y1 = layout.panel.y0 + panel.dy;
    }
    appendSolid(vertices, badge, params.labelColor, pose);
    for (const CaptionLine& line : layout.label) appendLine(vertices, font, line, pose);
}

} // namespace

LowerThird layoutLowerThird(const CaptionParams& params, const CaptionFont& font, int width, int height) {
    LowerThird layout;
    layout.width = static_cast<float>(std::max(width, 1));
    layout.height = static_cast<float>(std::max(height, 1));
    layout.unit = std::min(layout.width, layout.height) / kReferenceHeight;
    Blocks blocks = setBlocks(params, font, layout.width, layout.unit);
    const float tall = blocks.panelHeight + blocks.badgeHeight;
    if (tall > kMostHeight * layout.height) {
        layout.unit *= kMostHeight * layout.height / tall;
        blocks = setBlocks(params, font, layout.width, layout.unit);
    }
    placePanel(layout, params, blocks);
    placeTexts(layout, params, font, blocks);
    placeBadge(layout, params, font, blocks);
    layout.title = std::move(blocks.title.lines);
    layout.subtitle = std::move(blocks.subtitle.lines);
    layout.label = std::move(blocks.label.lines);
    return layout;
}

float lowerThirdProgress(const CaptionParams& params, float time, float duration, float delay) {
    const float phase = duration > 0.0f ? std::min(time, duration - time) : time;
    const float enter = duration > 0.0f ? std::min(params.enterDuration, 0.5f * duration) : params.enterDuration;
    if (!(phase >= 0.0f)) return 0.0f;
    if (enter <= 0.0f) return 1.0f;
    return easeOut((phase / enter - delay) / kPartLength);
}

void appendLowerThird(std::vector<float>& vertices, const LowerThird& layout, const CaptionParams& params,
                      const CaptionFont& font, float time, float duration) {
    const auto at = [&](float delay) { return lowerThirdProgress(params, time, duration, delay); };
    const Progress progress = {at(kPanelDelay), at(kAccentDelay),   at(kTitleDelay),
                               at(kRuleDelay),  at(kSubtitleDelay), at(kBadgeDelay)};
    const CaptionPose panel = panelPose(layout, params, progress.panel);
    if (hasArea(layout.panel)) appendPanel(vertices, layout, params, progress, panel);
    appendBadge(vertices, layout, params, font, progress.badge, panel);
    const CaptionPose title = textPose(layout, params, panel, progress.title);
    const CaptionPose subtitle = textPose(layout, params, panel, progress.subtitle);
    for (const CaptionLine& line : layout.title) appendLine(vertices, font, line, title);
    for (const CaptionLine& line : layout.subtitle) appendLine(vertices, font, line, subtitle);
}

size_t maxLowerThirdFloats(const LowerThird& layout) {
    constexpr size_t kPlainQuads = 9 + 4; // shadow; panel, accent, line, badge
    size_t quads = kPlainQuads;
    for (const auto* lines : {&layout.title, &layout.subtitle, &layout.label}) {
        for (const CaptionLine& line : *lines) quads += line.text.size();
    }
    return quads * kCaptionQuadFloats;
}
