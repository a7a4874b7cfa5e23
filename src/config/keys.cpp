#include "config/keys.h"

#include "foundation/json.h"
#include "foundation/text.h"

#include <algorithm>
#include <cmath>

namespace {

constexpr size_t kMaxPlaceName = 64; // bytes of one key in a place; transitions are named by the show

void appendName(std::string& place, std::string_view name, int index) {
    if (!place.empty() && !name.empty()) place += '.';
    place += printableName(std::string(name.substr(0, kMaxPlaceName)));
    if (index >= 0) place.append("[").append(std::to_string(index)).append("]");
}

void appendPlace(std::string& place, const Reading& at) {
    if (at.outer) appendPlace(place, *at.outer);
    appendName(place, at.name, at.index);
}

// A null is as good as nothing.
bool hasKind(const JsonValue& value, JsonKind kind, const Reading& at, std::string_view key) {
    if (value.kind != kind && value.kind != JsonKind::null) noteOddity(at, key, OddKind::wrongKind);
    return value.kind == kind;
}

// One value of a key into its field, by the field's type; false when the field keeps what it has.
struct Taker {
    const JsonValue& value;
    const Key& row;
    std::string_view name; // the key's, or the alias's
    void* record;
    const Reading& at;

    bool operator()(BoolField field) const {
        if (!hasKind(value, JsonKind::boolean, at, name)) return false;
        field(record) = value.boolean;
        return true;
    }

    bool operator()(IntField field) const {
        if (!hasKind(value, JsonKind::number, at, name)) return false;
        if (!std::isfinite(value.number)) {
            noteOddity(at, name, OddKind::notFinite);
            return false;
        }
        const int whole = getInt(value, 0);
        const double kept = std::clamp(static_cast<double>(whole), static_cast<double>(row.range.least),
                                       static_cast<double>(row.range.most));
        field(record) = static_cast<int>(kept);
        if (std::trunc(value.number) != kept) noteOddity(at, name, OddKind::outOfRange);
        return true;
    }

    bool operator()(FloatField field) const { return readNumber(value, row.range, field(record), at, name); }

    bool operator()(TextField field) const {
        if (!hasKind(value, JsonKind::string, at, name)) return false;
        if (row.emptyIsMissing && value.text.empty()) return false;
        std::string& text = field(record);
        switch (row.form) {
        case TextForm::plain: text = value.text; break;
        case TextForm::name:
            text = keptName(value.text);
            if (value.text.size() > kMaxNameBytes) noteOddity(at, name, OddKind::tooLong);
            break;
        case TextForm::assetPath:
            text = at.assets && at.baseDir ? resolveAssetPath(value.text, *at.assets, *at.baseDir) : value.text;
            break;
        }
        return true;
    }

    bool operator()(WordField field) const {
        if (!hasKind(value, JsonKind::string, at, name)) return false;
        for (const Word& word : row.words) {
            if (!matchesWord(value.text, word.name, row.spelling)) continue;
            field(record, word.value);
            return true;
        }
        noteOddity(at, name, OddKind::unknownWord);
        field(record, row.otherwise);
        return true;
    }

    bool operator()(const ColorField& field) const {
        if (!hasKind(value, JsonKind::array, at, name)) return false;
        if (row.wholeOnly && value.items.size() < field.count) {
            noteOddity(at, name, OddKind::wrongKind);
            return false;
        }
        for (size_t i = 0; i < std::min(value.items.size(), field.count); ++i) {
            readNumber(value.items[i], row.range, field.component(record, i), at, name, static_cast<int>(i));
        }
        return true;
    }
};

bool isJoin(char c) {
    return c == '-' || c == '_';
}

} // namespace

Reading inside(const Reading& outer, std::string_view name, int index) {
    return {outer.assets, outer.baseDir, outer.oddities, &outer, name, index};
}

void noteOddity(const Reading& object, std::string_view key, OddKind kind, int index) {
    if (!object.oddities || object.oddities->size() >= kMaxOddities) return;
    Oddity oddity;
    oddity.kind = kind;
    appendPlace(oddity.place, object);
    appendName(oddity.place, key, index);
    // What several records read, "alpha" say, is said once.
    const bool isKnown = std::any_of(object.oddities->begin(), object.oddities->end(), [&](const Oddity& known) {
        return known.kind == kind && known.place == oddity.place;
    });
    if (!isKnown) object.oddities->push_back(std::move(oddity));
}

void noteOddity(const Reading& object, OddKind kind) {
    noteOddity(object, {}, kind);
}

bool isObject(const JsonValue& value, const Reading& at) {
    if (value.kind != JsonKind::object && value.kind != JsonKind::null) noteOddity(at, OddKind::wrongKind);
    return value.kind == JsonKind::object;
}

std::string keptName(std::string_view name) {
    return printableName(std::string(name.substr(0, kMaxNameBytes)));
}

bool matchesWord(std::string_view text, const char* word, Spelling spelling) {
    if (spelling == Spelling::exact) return text == word;
    for (const char c : text) {
        if (spelling == Spelling::anyCaseOrJoins && isJoin(c)) continue;
        if (*word == '\0' || toLower(c) != *word++) return false;
    }
    return *word == '\0';
}

bool readKey(const JsonValue& object, const Key& row, void* record, const Reading& at) {
    if (std::visit(Taker{find(object, row.name), row, row.name, record, at}, row.field)) return true;
    for (const char* alias : row.aliases) {
        if (std::visit(Taker{find(object, alias), row, alias, record, at}, row.field)) return true;
    }
    return false;
}

bool readNumber(const JsonValue& value, Range range, float& number, const Reading& object, std::string_view key,
                int index) {
    if (value.kind == JsonKind::null) return false;
    if (value.kind != JsonKind::number) {
        noteOddity(object, key, OddKind::wrongKind, index);
        return false;
    }
    const float written = static_cast<float>(value.number);
    const float kept = getBounded(value, NAN, range.least, range.most);
    if (!std::isfinite(written)) {
        noteOddity(object, key, OddKind::notFinite, index);
    } else if (kept != written) {
        noteOddity(object, key, OddKind::outOfRange, index);
    }
    if (std::isfinite(kept)) number = kept;
    return std::isfinite(kept);
}
