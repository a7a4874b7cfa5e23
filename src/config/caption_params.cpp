#include "config/caption_params.h"

#include "foundation/json.h"
#include "foundation/text.h"

#include <algorithm>

namespace {

using Params = CaptionParams;

constexpr Range kShare = {0.0f, 1.0f};
constexpr Range kScale = {0.25f, 16.0f};
constexpr Range kSpacing = {0.5f, 4.0f};

constexpr NamedValue<CaptionEnter> kEnterNames[] = {
    {"slide-left", CaptionEnter::slideLeft},
    {"slide-right", CaptionEnter::slideRight},
    {"slide-up", CaptionEnter::slideUp},
    {"fade", CaptionEnter::fade},
    {"wipe", CaptionEnter::wipe},
};
constexpr auto kEnters = wordsOf(Spelling::anyCase, kEnterNames);

constexpr auto kModes = wordsOf<CreditMode>(Spelling::anyCase,
                                            {{"scroll", CreditMode::scroll}, {"blocks", CreditMode::blocks}});

constexpr auto kAligns = wordsOf<CreditAlign>(Spelling::anyCase,
                                              {{"columns", CreditAlign::columns}, {"center", CreditAlign::center}});

constexpr const char* kPanelEnabled[] = {"panelEnabled"};

constexpr KeyOf<Params> kSharedKeys[] = {
    key<&Params::fontPath>("fontPath"),
    key<&Params::blendMode>("blendMode", kBlendModes, BlendMode::alpha),
    key<&Params::alpha>("alpha", kShare),
    key<&Params::padding>("padding", {0.0f, 400.0f}),
    key<&Params::panelColor>("panelColor", kShare),
    key<&Params::accentColor>("accentColor", kShare),
    key<&Params::lineColor>("lineColor", kShare),
    key<&Params::textTint>("textTint", kShare),
    key<&Params::subtitleScale>("subtitleScale", kScale),
};

constexpr KeyOf<Params> kLowerThirdKeys[] = {
    key<&Params::title>("title"),
    key<&Params::subtitle>("subtitle"),
    key<&Params::label>("label"),
    key<&Params::titleScale>("titleScale", kScale),
    key<&Params::subtitleLineSpacing>("subtitleLineSpacing", kSpacing),
    key<&Params::labelScale>("labelScale", kScale),
    key<&Params::accentWidth>("accentWidth", {0.0f, 200.0f}),
    key<&Params::enterDuration>("enterDuration", {0.0f, 30.0f}),
    key<&Params::enter>("enter", kEnters, CaptionEnter::slideLeft),
    key<&Params::showLine>("showLine"),
    key<&Params::labelColor>("labelColor", kShare),
};

constexpr KeyOf<Params> kCreditRollKeys[] = {
    key<&Params::mode>("mode", kModes, CreditMode::scroll),
    key<&Params::align>("align", kAligns, CreditAlign::columns),
    key<&Params::header>("header"),
    key<&Params::showPanel>("showPanel").also(kPanelEnabled),
    key<&Params::showHeader>("showHeader"),
    key<&Params::showLines>("showLines"),
    key<&Params::headerScale>("headerScale", kScale),
    key<&Params::roleScale>("roleScale", kScale),
    key<&Params::nameScale>("nameScale", kScale),
    key<&Params::lineSpacing>("lineSpacing", kSpacing),
    key<&Params::rowSpacing>("rowSpacing", {0.0f, 1000.0f}),
    key<&Params::roleColumnWidth>("roleColumnWidth", {0.05f, 10000.0f}),
    key<&Params::scrollSpeed>("scrollSpeed", {0.0f, 20000.0f}),
    key<&Params::blockDuration>("blockDuration", {0.0f, 3600.0f}),
    key<&Params::fadeDuration>("fadeDuration", {0.0f, 60.0f}),
    key<&Params::headerTint>("headerTint", kShare),
    key<&Params::roleTint>("roleTint", kShare),
    key<&Params::nameTint>("nameTint", kShare),
    key<&Params::subtitleTint>("subtitleTint", kShare),
};

constexpr KeyOf<CreditEntry> kCreditEntryKeys[] = {
    key<&CreditEntry::role>("role"),
    key<&CreditEntry::name>("name"),
    key<&CreditEntry::subtitle>("subtitle"),
};

// "top-" or anything else, then the side; each half counts by itself.
void readAnchor(const JsonValue& value, Params& params, const Reading& at) {
    if (value.kind != JsonKind::string) {
        if (value.kind != JsonKind::null) noteOddity(at, "anchor", OddKind::wrongKind);
        return;
    }
    const std::string word = toLower(value.text);
    params.atTop = word.starts_with("top-");
    if (word.ends_with("left")) {
        params.side = CaptionSide::left;
    } else if (word.ends_with("right")) {
        params.side = CaptionSide::right;
    } else if (word.ends_with("center")) {
        params.side = CaptionSide::center;
    } else {
        noteOddity(at, "anchor", OddKind::unknownWord);
    }
}

// Takes from `budget` what the text needs; false when the text was cut.
bool cutText(std::string& text, size_t& budget) {
    const size_t kept = std::min({text.size(), kMaxCaptionTextBytes, budget});
    const bool whole = kept == text.size();
    text.resize(kept);
    budget -= kept;
    return whole;
}

void readEntries(const JsonValue& value, Params& params, const Reading& at) {
    if (value.kind != JsonKind::array) {
        if (value.kind != JsonKind::null) noteOddity(at, "entries", OddKind::wrongKind);
        return;
    }
    const size_t count = std::min(value.items.size(), kMaxCreditEntries);
    bool whole = count == value.items.size();
    size_t budget = kMaxCreditBytes;
    params.entries.reserve(count);
    for (size_t i = 0; i < count; ++i) {
        CreditEntry entry;
        readKeys(value.items[i], kCreditEntryKeys, entry, inside(at, "entries", static_cast<int>(i)));
        for (std::string* text : {&entry.role, &entry.name, &entry.subtitle}) whole &= cutText(*text, budget);
        const bool isEmpty = entry.role.empty() && entry.name.empty() && entry.subtitle.empty();
        if (!isEmpty) params.entries.push_back(std::move(entry));
    }
    params.entriesCut = !whole;
    if (!whole) noteOddity(at, "entries", OddKind::tooLong);
}

void readLowerThird(const JsonValue& json, Params& params, const Reading& at) {
    params.labelColor = params.accentColor; // unless the badge has a colour of its own
    readKeys(json, kLowerThirdKeys, params, at);
}

void readCreditRoll(const JsonValue& json, Params& params, const Reading& at) {
    // Texts without a tint of their own wear the common one.
    const bool hasTint = find(json, "textTint").kind == JsonKind::array;
    if (hasTint) params.headerTint = params.nameTint = params.roleTint = params.subtitleTint = params.textTint;
    readKeys(json, kCreditRollKeys, params, at);
    readEntries(find(json, "entries"), params, at);
}

void cutTexts(Params& params, const Reading& at) {
    size_t budget = kMaxCreditBytes;
    for (std::string* text : {&params.title, &params.subtitle, &params.label, &params.header}) {
        params.textsCut |= !cutText(*text, budget);
    }
    if (params.textsCut) noteOddity(at, OddKind::tooLong);
}

} // namespace

CaptionParams readCaptionParams(const JsonValue& json, bool isCreditRoll, const Reading& at) {
    CaptionParams params;
    params.isCreditRoll = isCreditRoll;
    if (isCreditRoll) params.side = CaptionSide::center;
    readKeys(json, kSharedKeys, params, at);
    readAnchor(find(json, "anchor"), params, at);
    if (isCreditRoll) {
        readCreditRoll(json, params, at);
    } else {
        readLowerThird(json, params, at);
    }
    cutTexts(params, at);
    return params;
}
