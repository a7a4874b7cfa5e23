#include "text/caption_params.h"

#include "foundation/log.h"
#include "foundation/text.h"

#include <algorithm>

namespace {

constexpr float kMinScale = 0.25f, kMaxScale = 16.0f;
constexpr float kMinSpacing = 0.5f, kMaxSpacing = 4.0f;

void readNumber(const JsonValue& value, float& number, float low, float high) {
    number = getBounded(value, number, low, high);
}

void readScale(const JsonValue& value, float& scale) {
    readNumber(value, scale, kMinScale, kMaxScale);
}

void readText(const JsonValue& value, std::string& text) {
    if (value.kind == JsonKind::string) text = value.text;
}

// Three or four numbers; what is missing or no number keeps the default.
void readColor(const JsonValue& value, CaptionColor& color) {
    if (value.kind != JsonKind::array) return;
    float* const components[] = {&color.r, &color.g, &color.b, &color.a};
    for (size_t i = 0; i < std::min(value.items.size(), std::size(components)); ++i) {
        readNumber(value.items[i], *components[i], 0.0f, 1.0f);
    }
}

// Lower case, without the signs that join words: "Slide_Left" and "slide-left" are the same.
std::string readWord(const JsonValue& value) {
    return value.kind == JsonKind::string ? toLower(value.text) : "";
}

void readAnchor(const JsonValue& value, CaptionParams& params) {
    const std::string word = readWord(value);
    params.atTop = word.starts_with("top-");
    if (word.ends_with("left")) params.side = CaptionSide::left;
    if (word.ends_with("right")) params.side = CaptionSide::right;
    if (word.ends_with("center")) params.side = CaptionSide::center;
}

CaptionEnter readEnter(const JsonValue& value) {
    const std::string word = readWord(value);
    if (word == "slide-right") return CaptionEnter::slideRight;
    if (word == "slide-up") return CaptionEnter::slideUp;
    if (word == "fade") return CaptionEnter::fade;
    if (word == "wipe") return CaptionEnter::wipe;
    return CaptionEnter::slideLeft;
}

void readShared(const JsonValue& params, CaptionParams& caption) {
    readText(find(params, "fontPath"), caption.fontPath);
    caption.blendMode = blendModeFrom(getString(find(params, "blendMode"), "alpha"));
    readNumber(find(params, "alpha"), caption.alpha, 0.0f, 1.0f);
    readAnchor(find(params, "anchor"), caption);
    readNumber(find(params, "padding"), caption.padding, 0.0f, 400.0f);
    readColor(find(params, "panelColor"), caption.panelColor);
    readColor(find(params, "accentColor"), caption.accentColor);
    readColor(find(params, "lineColor"), caption.lineColor);
    readColor(find(params, "textTint"), caption.textTint);
    readScale(find(params, "subtitleScale"), caption.subtitleScale);
}

void readLowerThird(const JsonValue& params, CaptionParams& caption) {
    readText(find(params, "title"), caption.title);
    readText(find(params, "subtitle"), caption.subtitle);
    readText(find(params, "label"), caption.label);
    readScale(find(params, "titleScale"), caption.titleScale);
    readNumber(find(params, "subtitleLineSpacing"), caption.subtitleLineSpacing, kMinSpacing, kMaxSpacing);
    readScale(find(params, "labelScale"), caption.labelScale);
    readNumber(find(params, "accentWidth"), caption.accentWidth, 0.0f, 200.0f);
    readNumber(find(params, "enterDuration"), caption.enterDuration, 0.0f, 30.0f);
    caption.enter = readEnter(find(params, "enter"));
    caption.showLine = getBool(find(params, "showLine"), caption.showLine);
    // The badge wears the accent's colour unless it has one of its own.
    caption.labelColor = caption.accentColor;
    readColor(find(params, "labelColor"), caption.labelColor);
}

// Takes from `budget` what the text needs; false when the text was cut.
bool cutText(std::string& text, size_t& budget) {
    const size_t kept = std::min({text.size(), kMaxCaptionTextBytes, budget});
    const bool whole = kept == text.size();
    text.resize(kept);
    budget -= kept;
    return whole;
}

void readEntries(const JsonValue& value, std::vector<CreditEntry>& entries) {
    if (value.kind != JsonKind::array) return;
    const size_t count = std::min(value.items.size(), kMaxCreditEntries);
    bool whole = count == value.items.size();
    size_t budget = kMaxCreditBytes;
    entries.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        const JsonValue& item = value.items[i];
        CreditEntry entry;
        readText(find(item, "role"), entry.role);
        readText(find(item, "name"), entry.name);
        readText(find(item, "subtitle"), entry.subtitle);
        for (std::string* text : {&entry.role, &entry.name, &entry.subtitle}) whole &= cutText(*text, budget);
        const bool isEmpty = entry.role.empty() && entry.name.empty() && entry.subtitle.empty();
        if (!isEmpty) entries.push_back(std::move(entry));
    }
    if (whole) return;
    logLine("    [WARN] Credit roll cut: %d entries of at most %d, texts of at most %d bytes, together %d\n",
            static_cast<int>(entries.size()), static_cast<int>(kMaxCreditEntries),
            static_cast<int>(kMaxCaptionTextBytes), static_cast<int>(kMaxCreditBytes));
}

void readCreditRoll(const JsonValue& params, CaptionParams& caption) {
    const std::string align = readWord(find(params, "align"));
    caption.mode = readWord(find(params, "mode")) == "blocks" ? CreditMode::blocks : CreditMode::scroll;
    caption.align = align == "center" ? CreditAlign::center : CreditAlign::columns;
    readText(find(params, "header"), caption.header);
    caption.showPanel = getBool(find(params, "showPanel"), getBool(find(params, "panelEnabled"), caption.showPanel));
    caption.showHeader = getBool(find(params, "showHeader"), caption.showHeader);
    caption.showLines = getBool(find(params, "showLines"), caption.showLines);
    readScale(find(params, "headerScale"), caption.headerScale);
    readScale(find(params, "roleScale"), caption.roleScale);
    readScale(find(params, "nameScale"), caption.nameScale);
    readNumber(find(params, "lineSpacing"), caption.lineSpacing, kMinSpacing, kMaxSpacing);
    readNumber(find(params, "rowSpacing"), caption.rowSpacing, 0.0f, 1000.0f);
    readNumber(find(params, "roleColumnWidth"), caption.roleColumnWidth, 0.05f, 10000.0f);
    readNumber(find(params, "scrollSpeed"), caption.scrollSpeed, 0.0f, 20000.0f);
    readNumber(find(params, "blockDuration"), caption.blockDuration, 0.0f, 3600.0f);
    readNumber(find(params, "fadeDuration"), caption.fadeDuration, 0.0f, 60.0f);
    // Texts without a tint of their own wear the common one.
    const bool hasTint = find(params, "textTint").kind == JsonKind::array;
    if (hasTint) caption.headerTint = caption.nameTint = caption.roleTint = caption.subtitleTint = caption.textTint;
    readColor(find(params, "headerTint"), caption.headerTint);
    readColor(find(params, "roleTint"), caption.roleTint);
    readColor(find(params, "nameTint"), caption.nameTint);
    readColor(find(params, "subtitleTint"), caption.subtitleTint);
    readEntries(find(params, "entries"), caption.entries);
}

} // namespace

CaptionParams readCaptionParams(const JsonValue& params, bool isCreditRoll) {
    CaptionParams caption;
    caption.isCreditRoll = isCreditRoll;
    if (isCreditRoll) caption.side = CaptionSide::center;
    readShared(params, caption);
    if (isCreditRoll) {
        readCreditRoll(params, caption);
    } else {
        readLowerThird(params, caption);
    }
    size_t budget = kMaxCreditBytes;
    bool whole = true;
    for (std::string* text : {&caption.title, &caption.subtitle, &caption.label, &caption.header}) {
        whole &= cutText(*text, budget);
    }
    if (!whole) logLine("    [WARN] Caption text cut to %d bytes\n", static_cast<int>(kMaxCaptionTextBytes));
    return caption;
}
