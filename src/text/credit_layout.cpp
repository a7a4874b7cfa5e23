#include "text/credit_roll.h"

#include <algorithm>

namespace {

constexpr float kReferenceHeight = 1080.0f;
constexpr float kMarginX = 0.06f, kMarginY = 0.1f; // shares of the output
constexpr float kHeadingGap = 0.7f; // row spacings that a heading stands further apart from those before it
constexpr float kLineBelow = 0.25f; // what hangs below a baseline, in capitals' heights

// Pixels of the reference height.
constexpr float kRollWidth = 1320.0f;
constexpr float kGutter = 56.0f; // between roles and names
constexpr float kRuleWidth = 2.0f;
constexpr float kHeaderGap = 34.0f; // above and below its rule
constexpr float kHeaderRule = 420.0f, kHeaderAccent = 90.0f, kHeaderAccentWidth = 6.0f;

// A pen that goes down the roll.
struct Setter {
    CreditRoll& roll;
    const CaptionParams& params;
    const CaptionFont& font;
    float left = 0.0f, right = 0.0f; // of what is set
    float namesLeft = 0.0f, rolesRight = 0.0f;
    float y = 0.0f;
};

// One text with its size and colour.
struct Piece {
    std::vector<std::string> lines;
    float capPixels = 0.0f;
    CaptionColor color;
};

Piece makePiece(const Setter& setter, const std::string& text, float scale, const CaptionColor& color) {
    const float capPixels = kCaptionCapPixels * setter.roll.unit * scale;
    return {captionLines(setter.font, text, kMaxCaptionTextBytes), capPixels, color};
}

// A line between two sides on the baseline; nothing for an empty one.
void setLine(Setter& setter, Piece& piece, size_t index, CaptionSide side, float left, float right, float baseline) {
    if (index >= piece.lines.size() || piece.lines[index].empty()) return;
    CaptionLine line;
    line.text = std::move(piece.lines[index]);
    line.capPixels = fitCaptionLine(setter.font, line.text, piece.capPixels, std::max(right - left, 1.0f));
    const float room = right - left - captionWidth(setter.font, line.text, line.capPixels);
    line.x = left + (side == CaptionSide::left ? 0.0f : side == CaptionSide::center ? 0.5f * room : room);
    line.top = baseline - line.capPixels;
    line.color = piece.color;
    const float cell = line.capPixels * setter.font.cellHeight / setter.font.capHeight;
    setter.roll.overhang = std::max(setter.roll.overhang, cell);
    setter.roll.lines.push_back(std::move(line));
}

// Adds the row of the lines set since `firstLine`, if there are any, and goes on to the next line.
void closeRow(Setter& setter, size_t firstLine, float capPixels, const CaptionRect& rule) {
    CreditRow row;
    row.top = setter.y;
    row.bottom = std::max(setter.y + capPixels * (1.0f + kLineBelow), rule.y1);
    row.firstLine = firstLine;
    row.lineCount = setter.roll.lines.size() - firstLine;
    row.rule = rule;
    row.ruleColor = setter.params.lineColor;
    std::vector<CreditRow>& rows = setter.roll.rows;
    if (!rows.empty()) row.bottom = std::max(row.bottom, rows.back().bottom);
    if (row.lineCount > 0) rows.push_back(row);
    setter.y += capPixels * kCaptionLinePitch * setter.params.lineSpacing;
}

void setCentred(Setter& setter, Piece piece) {
    for (size_t i = 0; i < piece.lines.size(); ++i) {
        const size_t first = setter.roll.lines.size();
        setLine(setter, piece, i, CaptionSide::center, setter.left, setter.right, setter.y + piece.capPixels);
        closeRow(setter, first, piece.capPixels, {});
    }
}

// Roles end and names begin at the gutter, on one baseline; subtitles follow below the names.
void setColumns(Setter& setter, Piece roles, Piece names, Piece subtitles) {
    const float ruleX = 0.5f * (setter.rolesRight + setter.namesLeft);
    const float half = 0.5f * std::max(kRuleWidth * setter.roll.unit, 1.0f);
    const size_t upper = std::max(roles.lines.size(), names.lines.size());
    const size_t count = std::max(roles.lines.size(), names.lines.size() + subtitles.lines.size());
    for (size_t i = 0; i < count; ++i) {
        const bool isSubtitle = i >= names.lines.size();
        Piece& right = isSubtitle ? subtitles : names;
        const size_t index = isSubtitle ? i - names.lines.size() : i;
        const float rightCap = index < right.lines.size() ? right.capPixels : 0.0f;
        const float cap = std::max(rightCap, i < roles.lines.size() ? roles.capPixels : 0.0f);
        const size_t first = setter.roll.lines.size();
        setLine(setter, roles, i, CaptionSide::right, setter.left, setter.rolesRight, setter.y + cap);
        setLine(setter, right, index, CaptionSide::left, setter.namesLeft, setter.right, setter.y + cap);
        // On through the lines of one entry.
        const float length = i + 1 < upper ? cap * kCaptionLinePitch * setter.params.lineSpacing : cap;
        CaptionRect rule = {ruleX - half, setter.y, ruleX + half, setter.y + length};
        if (!setter.params.showLines || roles.lines.empty() || i >= upper) rule = {};
        closeRow(setter, first, cap, rule);
    }
}

// A role without a name heads those that follow.
bool isHeading(const CreditEntry& entry) {
    return entry.name.empty() && entry.subtitle.empty();
}

void setEntry(Setter& setter, const CreditEntry& entry) {
    const CaptionParams& params = setter.params;
    const size_t before = setter.roll.rows.size();
    Piece roles = makePiece(setter, entry.role, params.roleScale, params.roleTint);
    Piece names = makePiece(setter, entry.name, params.nameScale, params.nameTint);
    Piece subtitles = makePiece(setter, entry.subtitle, params.subtitleScale, params.subtitleTint);
    const bool isFirst = before == setter.roll.headerRows;
    if (isHeading(entry) && !isFirst) setter.y += kHeadingGap * params.rowSpacing * setter.roll.unit;
    if (params.align == CreditAlign::columns && !isHeading(entry)) {
        setColumns(setter, std::move(roles), std::move(names), std::move(subtitles));
    } else {
        setCentred(setter, std::move(roles));
        setCentred(setter, std::move(names));
        setCentred(setter, std::move(subtitles));
    }
    if (setter.roll.rows.size() == before) return;
    setter.y = setter.roll.rows.back().bottom + params.rowSpacing * setter.roll.unit; // without the last line's pitch
}

void addRule(Setter& setter, float width, float thickness, const CaptionColor& color) {
    const float middle = 0.5f * (setter.left + setter.right);
    const float half = 0.5f * std::min(width, setter.right - setter.left);
    CreditRow row;
    row.firstLine = setter.roll.lines.size();
    row.rule = {middle - half, setter.y - 0.5f * thickness, middle + half, setter.y + 0.5f * thickness};
    row.top = setter.y - 0.5f * thickness;
    row.bottom = setter.y + 0.5f * thickness;
    row.ruleColor = color;
    setter.roll.rows.push_back(row);
}

void setHeader(Setter& setter) {
    const CaptionParams& params = setter.params;
    CreditRoll& roll = setter.roll;
    if (!params.showHeader || params.header.empty()) return;
    setCentred(setter, makePiece(setter, params.header, params.headerScale, params.headerTint));
    if (roll.rows.empty()) return;
    setter.y = roll.rows.back().bottom + kHeaderGap * roll.unit;
    if (params.showLines) {
        const float thin = std::max(kRuleWidth * roll.unit, 1.0f);
        const float thick = std::max(kHeaderAccentWidth * roll.unit, thin);
        addRule(setter, kHeaderRule * roll.unit, thin, params.lineColor);
        addRule(setter, kHeaderAccent * roll.unit, thick, params.accentColor);
        roll.rows[roll.rows.size() - 2].top = roll.rows.back().top; // both are seen or neither
        roll.rows[roll.rows.size() - 2].bottom = roll.rows.back().bottom;
        setter.y = roll.rows.back().bottom + kHeaderGap * roll.unit;
    }
    setter.y += params.rowSpacing * roll.unit;
    roll.headerRows = roll.rows.size();
}

// Rows that are not parted: of an entry, with the headings before it.
struct EntryRows {
    size_t first = 0, end = 0;
};

// As many entries a group as fit, and evenly many.
void makeGroups(CreditRoll& roll, const std::vector<EntryRows>& entries, float room, size_t most) {
    roll.groups.clear();
    size_t inGroup = 0;
    for (const EntryRows& entry : entries) {
        if (entry.first == entry.end) continue;
        const bool begins = roll.groups.empty() || inGroup >= most ||
                            roll.rows[entry.end - 1].bottom - roll.rows[roll.groups.back().firstRow].top > room;
        if (begins) {
            roll.groups.push_back({entry.first, 0, 0.0f});
            inGroup = 0;
        }
        roll.groups.back().rowCount = entry.end - roll.groups.back().firstRow;
        ++inGroup;
    }
}

void placeGroups(CreditRoll& roll, const std::vector<EntryRows>& entries) {
    const float top = kMarginY * roll.height, bottom = (1.0f - kMarginY) * roll.height;
    roll.headerDy = top;
    float groupsTop = top;
    if (roll.headerRows > 0) groupsTop += roll.rows[roll.headerRows - 1].bottom + kHeaderGap * roll.unit;
    const float room = std::max(bottom - groupsTop, 0.1f * roll.height);
    makeGroups(roll, entries, room, entries.size());
    if (!roll.groups.empty()) {
        const size_t count = roll.groups.size();
        makeGroups(roll, entries, room, (entries.size() + count - 1) / count);
    }
    for (CreditGroup& group : roll.groups) {
        const float first = roll.rows[group.firstRow].top;
        const float tall = roll.rows[group.firstRow + group.rowCount - 1].bottom - first;
        group.dy = groupsTop + std::max(0.5f * (room - tall), 0.0f) - first;
    }
}

size_t rowFloats(const CreditRoll& roll, const CreditRow& row) {
    size_t quads = 1; // its rule
    for (size_t i = 0; i < row.lineCount; ++i) quads += roll.lines[row.firstLine + i].text.size();
    return quads * kCaptionQuadFloats;
}

// The most floats of rows that are in the output together.
size_t mostFloats(const CreditRoll& roll) {
    const float window = roll.height + 2.0f * roll.overhang;
    size_t most = 0, floats = 0, first = 0;
    for (const CreditRow& row : roll.rows) {
        floats += rowFloats(roll, row);
        while (roll.rows[first].bottom < row.top - window) floats -= rowFloats(roll, roll.rows[first++]);
        most = std::max(most, floats);
    }
    size_t header = 0; // with a group, in mode "blocks"
    for (size_t i = 0; i < roll.headerRows; ++i) header += rowFloats(roll, roll.rows[i]);
    constexpr size_t kPanelQuads = 9;
    return most + header + kPanelQuads * kCaptionQuadFloats;
}

} // namespace

CreditRoll layoutCreditRoll(const CaptionParams& params, const CaptionFont& font, int width, int height) {
    CreditRoll roll;
    roll.width = static_cast<float>(std::max(width, 1));
    roll.height = static_cast<float>(std::max(height, 1));
    roll.unit = std::min(roll.width, roll.height) / kReferenceHeight;
    const float padding = params.padding * roll.unit;
    const float outer = std::min(kRollWidth * roll.unit, roll.width * (1.0f - 2.0f * kMarginX));
    const float inner = std::max(outer - 2.0f * padding, 0.2f * outer);
    const float middleLeft = 0.5f * roll.width, reach = 0.5f * outer + kMarginX * roll.width;
    const float middle = params.side == CaptionSide::left    ? reach
                         : params.side == CaptionSide::right ? roll.width - reach
                                                             : middleLeft;
    if (params.showPanel) roll.panel = {middle - 0.5f * outer, 0.0f, middle + 0.5f * outer, roll.height};

    Setter setter = {roll, params, font};
    setter.left = middle - 0.5f * inner;
    setter.right = middle + 0.5f * inner;
    const float asked = params.roleColumnWidth * (params.roleColumnWidth <= 1.0f ? inner : roll.unit);
    const float gutter = setter.left + std::clamp(asked, 0.1f * inner, 0.9f * inner);
    setter.rolesRight = gutter - 0.5f * kGutter * roll.unit;
    setter.namesLeft = gutter + 0.5f * kGutter * roll.unit;

    setHeader(setter);
    std::vector<EntryRows> entries;
    entries.reserve(params.entries.size());
    bool joins = false;
    for (const CreditEntry& entry : params.entries) {
        const size_t first = joins ? entries.back().first : roll.rows.size();
        if (joins) entries.pop_back();
        setEntry(setter, entry);
        entries.push_back({first, roll.rows.size()});
        joins = isHeading(entry);
    }
    roll.contentHeight = roll.rows.empty() ? 0.0f : roll.rows.back().bottom;
    roll.overhang = std::min(roll.overhang, roll.height);
    if (params.mode == CreditMode::blocks) placeGroups(roll, entries);
    roll.mostFloats = mostFloats(roll);
    return roll;
}
