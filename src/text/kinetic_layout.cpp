#include "text/kinetic_layout.h"

#include "text/kinetic_random.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace {

constexpr float kPi = 3.14159265f;

// A font by code, with stand-ins filled in.
struct GlyphTable {
    std::array<ColorGlyph, 256> cells;
    std::array<bool, 256> isOwn = {}; // no stand-in
};

GlyphTable makeGlyphTable(const ColorFont& font) {
    const auto glyphOf = [&](char c) { return font.glyphs.find(static_cast<unsigned char>(c)); };
    ColorGlyph standIn;
    if (glyphOf('?') != font.glyphs.end()) {
        standIn = glyphOf('?')->second;
    } else {
        // The first in the order of the font's characters: a hash map's own differs between libraries.
        const auto first = std::find_if(font.chars.begin(), font.chars.end(),
                                        [&](char c) { return glyphOf(c) != font.glyphs.end(); });
        if (first != font.chars.end()) standIn = glyphOf(*first)->second;
    }
    GlyphTable table;
    table.cells.fill(standIn);
    for (const auto& [code, glyph] : font.glyphs) {
        table.cells[code] = glyph;
        table.isOwn[code] = true;
    }
    return table;
}

// Pixels that a character takes; 0 when it takes none.
float stepOf(float advance, const KineticTextParams& params) {
    return advance > 0.0f ? advance * params.scale + params.tracking : 0.0f;
}

float lineWidth(std::string_view line, const KineticTextParams& params, const ColorFont& font,
                const GlyphTable& table) {
    float width = 0.0f;
    bool isEmpty = true;
    for (const char c : line) {
        const unsigned char code = static_cast<unsigned char>(c);
        float advance = 0.0f;
        if (c == ' ') {
            advance = font.spaceWidth;
        } else if (table.isOwn[code]) {
            advance = table.cells[code].advance;
        }
        width += stepOf(advance, params);
        isEmpty = isEmpty && !(advance > 0.0f);
    }
    return isEmpty ? 0.0f : std::max(width - params.tracking, 0.0f);
}

// How far behind its predecessor a glyph is on a wave, in radians.
constexpr float kWavePhase = 0.65f;

void addPhase(KineticGlyph& glyph) {
    const float phase = static_cast<float>(glyph.charIndex) * kWavePhase;
    glyph.phaseSin = std::sin(phase);
    glyph.phaseCos = std::cos(phase);
}

// Where the glyph flies, turns and grows to when the text explodes.
void addFlight(KineticGlyph& glyph, const KineticTextParams& params) {
    const uint32_t seed = glyph.seed;
    const float angle = hashSigned(seed + 0x1b6) * kPi + hash01(seed + 0x1bc) * kPi;
    float x = std::cos(angle), y = std::sin(angle) + (-0.35f - hash01(seed + 0x1c4) * 0.55f);
    const float length = std::sqrt(x * x + y * y);
    if (length > 0.01f) {
        x /= length;
        y /= length;
    } else {
        x = 0.0f;
        y = -1.0f;
    }
    const float distance = (hash01(seed + 0x1d0) * 0.9f + 0.35f) * params.explodeAmount;
    glyph.flightX = x * distance;
    glyph.flightY = y * distance;
    glyph.spin = hashSign(seed + 0x1da) * params.explodeSpin * 6.2831855f;
    glyph.growth = hash01(seed + 0x1e2) * 0.35f + 0.1f;
}

// Counts over the whole text.
struct TextCounters {
    int line = 0;
    int chars = 0;
    int words = 0;
};

void layoutLine(std::string_view line, const KineticTextParams& params, const ColorFont& font, const GlyphTable& table,
                TextCounters& count, KineticLayout& layout) {
    const bool explodes = params.animation == KineticAnimation::explode && params.explodeAmount > 0.0f;
    const bool waves = params.animation == KineticAnimation::wave;
    const size_t lastInk = line.find_last_not_of(' ');
    float pen = 0.0f;
    for (size_t i = 0; i < line.size(); ++i) {
        const unsigned char code = static_cast<unsigned char>(line[i]);
        const bool isSpace = line[i] == ' ';
        if (!isSpace) {
            KineticGlyph glyph;
            glyph.cell = table.cells[code];
            glyph.pen = pen;
            glyph.line = count.line;
            glyph.charIndex = count.chars;
            glyph.wordIndex = count.words;
            glyph.seed = static_cast<uint32_t>(count.chars) * kCharSeed +
                         static_cast<uint32_t>(count.words) * kWordSeed;
            glyph.code = code;
            if (waves) addPhase(glyph);
            if (explodes) addFlight(glyph, params);
            layout.glyphs.push_back(glyph);
            ++count.chars;
        }
        pen += stepOf(isSpace ? font.spaceWidth : table.cells[code].advance, params);
        const bool endsWord = isSpace && i > 0 && lastInk != std::string_view::npos && i < lastInk;
        if (endsWord || i + 1 == line.size()) ++count.words;
    }
}

// Goes round twice from the end, so that what lies behind the last character is known there.
std::vector<ScrambleLetter> findScrambleLetters(const std::string& chars, const GlyphTable& table) {
    std::vector<ScrambleLetter> letters(chars.size());
    ScrambleLetter next;
    for (size_t i = chars.size() * 2; i-- > 0;) {
        const unsigned char code = static_cast<unsigned char>(chars[i % chars.size()]);
        if (code != ' ' && table.isOwn[code] && next.first != code) next = {code, next.first};
        letters[i % chars.size()] = next;
    }
    return letters;
}

} // namespace

KineticLayout layoutKineticText(const KineticTextParams& params, const ColorFont& font) {
    const GlyphTable table = makeGlyphTable(font);
    KineticLayout layout;
    layout.cellWidth = static_cast<float>(font.cellWidth) * params.scale;
    layout.cellHeight = static_cast<float>(font.cellHeight) * params.scale;
    layout.texelU = 1.0f / static_cast<float>(std::max(font.textureWidth, 1));
    layout.texelV = 1.0f / static_cast<float>(std::max(font.textureHeight, 1));
    layout.glyphs.reserve(params.text.size());

    TextCounters count;
    std::string_view rest = params.text;
    for (;; ++count.line) {
        const size_t end = rest.find('\n');
        const std::string_view line = rest.substr(0, end);
        layout.lineWidths.push_back(lineWidth(line, params, font, table));
        layoutLine(line, params, font, table, count, layout);
        if (end == std::string_view::npos) break;
        rest.remove_prefix(end + 1);
    }

    if (params.animation == KineticAnimation::scramble && params.scrambleDuration > 0.0f) {
        layout.letters = findScrambleLetters(font.chars, table);
        layout.cells.assign(table.cells.begin(), table.cells.end());
    }
    return layout;
}
