#include "text/caption_font.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr uint8_t kInkAlpha = 112;       // glow and soft edges lie below
constexpr float kLetterGap = 0.2f;       // between the ink of two letters, in capitals' heights
constexpr float kSpaceWidth = 0.66f;     // likewise
constexpr size_t kMostTexels = 1u << 24; // a larger atlas is not looked through
constexpr float kMostShrink = 0.5f;
constexpr size_t kMaxLineLetters = 512;
constexpr float kFarthestTexel = 1 << 20; // of a cell that is drawn: shaders count texels in whole numbers

struct Ink {
    int left = 0, right = -1, top = 0, bottom = -1; // cell pixels, inclusive; right < left: none
};

void include(Ink& ink, int x, int y) {
    if (ink.right < ink.left) {
        ink = {x, x, y, y};
        return;
    }
    ink = {std::min(ink.left, x), std::max(ink.right, x), std::min(ink.top, y), std::max(ink.bottom, y)};
}

// Of a cell, all that is not clear, and of that what counts as ink.
struct CellInk {
    bool inside = false; // in the atlas, all of it
    Ink drawn, ink;
};

CellInk inkOf(const ColorFont& font, const ColorGlyph& glyph, const std::vector<uint8_t>& pixels) {
    const float width = static_cast<float>(font.textureWidth), height = static_cast<float>(font.textureHeight);
    const float left = std::round(glyph.u0 * width), top = std::round((1.0f - glyph.v1) * height);
    const bool inside = left >= 0.0f && top >= 0.0f && left + static_cast<float>(font.cellWidth) <= width &&
                        top + static_cast<float>(font.cellHeight) <= height;
    CellInk cell;
    cell.inside = inside;
    if (!inside) return cell;
    const size_t x0 = static_cast<size_t>(left), y0 = static_cast<size_t>(top);
    for (int y = 0; y < font.cellHeight; ++y) {
        const size_t row = static_cast<size_t>(font.textureHeight) - 1 - y0 - static_cast<size_t>(y);
        for (int x = 0; x < font.cellWidth; ++x) {
            const size_t texel = row * static_cast<size_t>(font.textureWidth) + x0 + static_cast<size_t>(x);
            const uint8_t alpha = pixels[texel * 4 + 3];
            if (alpha > 0) include(cell.drawn, x, y);
            if (alpha >= kInkAlpha) include(cell.ink, x, y);
        }
    }
    return cell;
}

// Letters leave most of their cells clear; a texel around them is the filter's.
void cropTo(CaptionGlyph& glyph, const Ink& drawn, float cellWidth, float cellHeight) {
    const bool isClear = drawn.right < drawn.left;
    const float x0 = isClear ? 0.0f : std::max(static_cast<float>(drawn.left) - 1.0f, 0.0f);
    const float x1 = isClear ? 0.0f : std::min(static_cast<float>(drawn.right) + 2.0f, cellWidth);
    const float y0 = isClear ? 0.0f : std::max(static_cast<float>(drawn.top) - 1.0f, 0.0f);
    const float y1 = isClear ? 0.0f : std::min(static_cast<float>(drawn.bottom) + 2.0f, cellHeight);
    const float du = (glyph.u1 - glyph.u0) / cellWidth, dv = (glyph.v1 - glyph.v0) / cellHeight;
    const CaptionGlyph whole = glyph;
    glyph.x0 = x0, glyph.x1 = x1, glyph.u0 = whole.u0 + du * x0, glyph.u1 = whole.u0 + du * x1;
    glyph.y0 = y0, glyph.y1 = y1, glyph.v0 = whole.v0 + dv * y0, glyph.v1 = whole.v0 + dv * y1;
}

// The first letter with flat ends that the font has says how high capitals are.
Ink capitalInk(const std::array<Ink, 256>& inks) {
    for (const char c : {'H', 'E', 'T', 'I', 'A', 'h'}) {
        const Ink& ink = inks[static_cast<unsigned char>(c)];
        if (ink.bottom >= ink.top) return ink;
    }
    Ink all;
    for (const Ink& ink : inks) {
        if (ink.bottom < ink.top) continue;
        include(all, ink.left, ink.top);
        include(all, ink.right, ink.bottom);
    }
    return all;
}

void setInCells(CaptionFont& caption, const ColorFont& font) {
    const float cell = static_cast<float>(font.cellHeight);
    const float baseline = static_cast<float>(font.baseline);
    caption.capTop = 0.2f * cell;
    caption.capHeight = std::clamp(baseline - caption.capTop, 0.5f * cell, cell);
}

void setByInk(CaptionFont& caption, const std::array<Ink, 256>& inks) {
    caption.gap = kLetterGap * caption.capHeight;
    for (size_t c = 0; c < inks.size(); ++c) {
        CaptionGlyph& glyph = caption.glyphs[c];
        const Ink& ink = inks[c];
        if (!glyph.exists || c == ' ' || ink.right < ink.left) continue;
        glyph.left = static_cast<float>(ink.left) - 0.5f * caption.gap;
        glyph.advance = static_cast<float>(ink.right - ink.left + 1) + caption.gap;
    }
    CaptionGlyph& space = caption.glyphs[' '];
    if (space.exists) space.advance = kSpaceWidth * caption.capHeight;
}

// Whether the atlas, or its edge, has anything for the cell.
bool isInReach(const ColorFont& font, const ColorGlyph& glyph) {
    const float width = static_cast<float>(font.textureWidth), height = static_cast<float>(font.textureHeight);
    return glyph.u1 * width <= kFarthestTexel && (1.0f - glyph.v0) * height <= kFarthestTexel;
}

bool hasGlyph(const CaptionFont& font, char c) {
    return font.glyphs[static_cast<unsigned char>(c)].exists;
}

bool isContinuation(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

// Behind the character at `at`, of which the font has no glyph.
size_t behindCharacter(const CaptionFont& font, std::string_view text, size_t at) {
    const bool leads = static_cast<unsigned char>(text[at++]) >= 0xC0;
    while (leads && at < text.size() && isContinuation(text[at]) && !hasGlyph(font, text[at])) ++at;
    return at;
}

} // namespace

CaptionFont measureCaptionFont(const ColorFont& font, const std::vector<uint8_t>& pixels) {
    CaptionFont caption;
    const bool hasCells = font.cellWidth > 0 && font.cellHeight > 0;
    if (!hasCells || font.textureWidth <= 0 || font.textureHeight <= 0) return caption;
    caption.cellWidth = static_cast<float>(font.cellWidth);
    caption.cellHeight = static_cast<float>(font.cellHeight);
    std::array<Ink, 256> inks;
    const size_t texels = static_cast<size_t>(font.textureWidth) * static_cast<size_t>(font.textureHeight);
    const bool hasPixels = texels <= kMostTexels && pixels.size() >= texels * 4;
    for (const auto& [c, glyph] : font.glyphs) {
        const float most = 4.0f * caption.cellWidth;
        const float advance = std::isfinite(glyph.advance) ? std::clamp(glyph.advance, 0.0f, most) : 0.0f;
        CaptionGlyph& set = caption.glyphs[c];
        set = {true,     0.0f, 0.0f,   caption.cellWidth, caption.cellHeight, glyph.u0, glyph.v1, glyph.u1,
               glyph.v0, 0.0f, advance};
        if (!isInReach(font, glyph)) set.x1 = set.x0;
        if (!hasPixels) continue;
        const CellInk cell = inkOf(font, glyph, pixels);
        inks[c] = cell.ink;
        if (cell.inside) cropTo(set, cell.drawn, caption.cellWidth, caption.cellHeight);
    }
    // A space is a gap whether the atlas has a cell for it or not.
    CaptionGlyph& space = caption.glyphs[' '];
    if (!space.exists) space.advance = 0.5f * caption.cellWidth;
    space.exists = true;
    const Ink capitals = capitalInk(inks);
    if (capitals.bottom < capitals.top) {
        setInCells(caption, font);
        return caption;
    }
    caption.capTop = static_cast<float>(capitals.top);
    caption.capHeight = static_cast<float>(capitals.bottom - capitals.top + 1);
    setByInk(caption, inks);
    return caption;
}

std::vector<std::string> captionLines(const CaptionFont& font, std::string_view text, size_t maxLines) {
    std::vector<std::string> lines;
    if (text.empty() || maxLines == 0) return lines;
    lines.emplace_back();
    for (size_t i = 0; i < text.size();) {
        const char c = text[i];
        const bool escaped = c == '\\' && i + 1 < text.size() && text[i + 1] == 'n';
        if (c == '\n' || escaped) {
            if (lines.size() == maxLines) break;
            lines.emplace_back();
            i += escaped ? 2 : 1;
        } else if (c == '\t' || c == '\r') {
            if (c == '\t') lines.back() += ' ';
            ++i;
        } else if (hasGlyph(font, c)) {
            lines.back() += c;
            ++i;
        } else {
            if (hasGlyph(font, '?')) lines.back() += '?';
            i = behindCharacter(font, text, i);
        }
    }
    return lines;
}

float captionWidth(const CaptionFont& font, std::string_view line, float capPixels) {
    float width = 0.0f;
    for (const char c : line) width += font.glyphs[static_cast<unsigned char>(c)].advance;
    return std::max(width - font.gap, 0.0f) * capPixels / font.capHeight;
}

float fitCaptionLine(const CaptionFont& font, std::string& line, float capPixels, float maxWidth) {
    const float scale = capPixels / font.capHeight;
    const float width = captionWidth(font, line, capPixels);
    if (width <= maxWidth && line.size() <= kMaxLineLetters) return capPixels;
    const float shrink = std::clamp(maxWidth / std::max(width, 1e-6f), kMostShrink, 1.0f);
    const float room = maxWidth / (scale * shrink);

    const std::string_view dots = hasGlyph(font, '.') ? "..." : "";
    const float dotsWidth = captionWidth(font, dots, font.capHeight);
    float end = -font.gap; // of the letters so far, cell pixels
    size_t kept = 0;       // letters that leave room for the dots
    for (size_t i = 0; i < line.size(); ++i) {
        end += font.glyphs[static_cast<unsigned char>(line[i])].advance;
        const float slack = 1e-3f * room; // what shrank to fit must count as fitting
        if (end > room + slack || i >= kMaxLineLetters) {
            line.resize(kept);
            line += dots;
            break;
        }
        if (end + dotsWidth + font.gap <= room) kept = i + 1;
    }
    return capPixels * shrink;
}
