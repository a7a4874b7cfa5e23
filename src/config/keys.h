// A table of keys: what an object of a show's description may hold, and which field of a record each value fills.
//
// A row names the key and the field, whose type says what is read: key<&Record::field>("name", range). What is
// missing keeps the field's default, and so does what is of another kind, which is noted as odd.
#pragma once

#include "config/paths.h"

#include <array>
#include <cstddef>
#include <limits>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

struct JsonValue;

constexpr size_t kMaxNameBytes = 1024; // of ids, types and scene names
constexpr size_t kMaxOddities = 1000;  // of a show; more than a person reads

enum class OddKind {
    wrongKind,   // took its default
    notFinite,   // took its default, or the end of its range on that side
    outOfRange,  // took the nearer end
    unknownWord, // took what the key has for those
    tooLong,     // a text or list was cut
    tooDeep,     // an effect within too many others was left out
    missing,     // the effect cannot be made without it
};

struct Oddity {
    std::string place; // "entries[3].params.scale"
    OddKind kind = OddKind::wrongKind;
};

// Where in the description an object stands, one link a level, and what its values are read with. Lives on the
// stack; a default one reads paths as they are written and notes nothing.
struct Reading {
    const AssetMap* assets = nullptr;
    const std::string* baseDir = nullptr;
    std::vector<Oddity>* oddities = nullptr;
    const Reading* outer = nullptr; // null: the description itself
    std::string_view name = {};     // the key that the object stands under
    int index = -1;                 // within a list
};

// What stands under `name` in the object of `outer`, an element of the list there where an index is given.
Reading inside(const Reading& outer, std::string_view name, int index = -1);

void noteOddity(const Reading& object, std::string_view key, OddKind kind, int index = -1);
void noteOddity(const Reading& object, OddKind kind);

// True when `value` is an object. Something else than nothing in its place is odd.
bool isObject(const JsonValue& value, const Reading& at);

// A name that a show gives, as the player keeps, compares and logs it: cut to a length that log and memory bear,
// however often it is copied, and kept to one line.
std::string keptName(std::string_view name);

// Of numbers; an infinite end is none.
struct Range {
    float least = -std::numeric_limits<float>::infinity();
    float most = std::numeric_limits<float>::infinity();
};

constexpr Range atLeast(float least) {
    return {.least = least};
}

// Whether "Top-Left" is the word "topleft".
enum class Spelling {
    exact,
    anyCase,
    anyCaseOrJoins, // "-" and "_" do not count either
};

struct Word {
    const char* name;
    int value; // of the field's enumerator
};

bool matchesWord(std::string_view text, const char* word, Spelling spelling);

// The words that a field of the type Value may be given as.
template <class Value, size_t Count>
struct Words {
    std::array<Word, Count> list;
    Spelling spelling;
};

template <class Value>
struct NamedValue {
    const char* name;
    Value value;
};

template <class Value, size_t Count>
constexpr Words<Value, Count> wordsOf(Spelling spelling, const NamedValue<Value> (&values)[Count]) {
    Words<Value, Count> words{{}, spelling};
    for (size_t i = 0; i < Count; ++i) words.list[i] = {values[i].name, static_cast<int>(values[i].value)};
    return words;
}

template <class Value, size_t Count>
Value valueOfWord(std::string_view text, const Words<Value, Count>& words, Value otherwise) {
    for (const Word& word : words.list) {
        if (matchesWord(text, word.name, words.spelling)) return static_cast<Value>(word.value);
    }
    return otherwise;
}

// What a text of the description becomes.
enum class TextForm {
    plain,
    name,      // keptName
    assetPath, // resolved against aliases and base folder
};

// The ways into a record; its type is known to whoever made the row.
using BoolField = bool& (*)(void* record);
using IntField = int& (*)(void* record);
using FloatField = float& (*)(void* record);
using TextField = std::string& (*)(void* record);
using WordField = void (*)(void* record, int value);
struct ColorField {
    float& (*component)(void* record, size_t index);
    size_t count; // 3 or 4
};

struct Key {
    const char* name;
    std::variant<BoolField, IntField, FloatField, TextField, WordField, ColorField> field;
    Range range = {};                 // of numbers, and of each component of a colour
    std::span<const Word> words = {}; // of words
    Spelling spelling = Spelling::exact;
    int otherwise = 0; // value that a word takes that is not known
    TextForm form = TextForm::plain;
    bool emptyIsMissing = false;               // of texts
    bool wholeOnly = false;                    // a colour of too few numbers is none, else the rest keeps its default
    std::span<const char* const> aliases = {}; // further names: the first that holds a value of the kind counts
};

// A row for the fields of one record.
template <class Record>
struct KeyOf : Key {
    constexpr KeyOf also(std::span<const char* const> names) const {
        KeyOf row = *this;
        row.aliases = names;
        return row;
    }
    constexpr KeyOf as(TextForm textForm) const {
        KeyOf row = *this;
        row.form = textForm;
        return row;
    }
    constexpr KeyOf unlessEmpty() const {
        KeyOf row = *this;
        row.emptyIsMissing = true;
        return row;
    }
    constexpr KeyOf whole() const {
        KeyOf row = *this;
        row.wholeOnly = true;
        return row;
    }
};

// The record and the type of a field that is given as a pointer to member; of an element where that is an array.
template <auto Member>
struct FieldOf;
template <class RecordType, class ValueType, ValueType RecordType::*Member>
struct FieldOf<Member> {
    using Record = RecordType;
    using Value = ValueType;
    static Value& in(void* record) { return static_cast<Record*>(record)->*Member; }
};
template <auto Member, size_t Index>
struct ElementOf {
    using Record = typename FieldOf<Member>::Record;
    using Value = typename FieldOf<Member>::Value::value_type;
    static Value& in(void* record) { return FieldOf<Member>::in(record)[Index]; }
};

template <class Field>
struct ColorAccess {
    using Value = typename Field::Value;
    static constexpr bool isArray = requires(Value color) { color.size(); };
    static constexpr size_t count = [] {
        if constexpr (isArray) return std::tuple_size_v<Value>;
        return size_t{4};
    }();
    static float& component(void* record, size_t index) {
        Value& color = Field::in(record);
        if constexpr (isArray) {
            return color[index];
        } else {
            float* const components[] = {&color.r, &color.g, &color.b, &color.a};
            return *components[index];
        }
    }
};

template <class Field>
constexpr auto accessTo() {
    using Value = typename Field::Value;
    if constexpr (std::is_same_v<Value, bool>) return BoolField{Field::in};
    else if constexpr (std::is_same_v<Value, int>) return IntField{Field::in};
    else if constexpr (std::is_same_v<Value, float>) return FloatField{Field::in};
    else if constexpr (std::is_same_v<Value, std::string>) return TextField{Field::in};
    else return ColorField{ColorAccess<Field>::component, ColorAccess<Field>::count};
}

template <class Field>
constexpr KeyOf<typename Field::Record> keyOfField(const char* name, Range range) {
    return {Key{.name = name, .field = accessTo<Field>(), .range = range}};
}

template <auto Member>
constexpr auto key(const char* name, Range range = {}) {
    return keyOfField<FieldOf<Member>>(name, range);
}

template <auto Member, size_t Index>
constexpr auto element(const char* name) {
    return keyOfField<ElementOf<Member, Index>>(name, {});
}

// `words` must outlive the row; a word that is not among them gives `otherwise`.
template <auto Member, size_t Count, class Value = typename FieldOf<Member>::Value>
constexpr auto key(const char* name, const Words<Value, Count>& words, Value otherwise) {
    const WordField set = [](void* record, int value) { FieldOf<Member>::in(record) = static_cast<Value>(value); };
    return KeyOf<typename FieldOf<Member>::Record>{Key{.name = name,
                                                       .field = set,
                                                       .words = words.list,
                                                       .spelling = words.spelling,
                                                       .otherwise = static_cast<int>(otherwise)}};
}

// Reads one key of an object into the record that the row is for; false when the field keeps its value.
bool readKey(const JsonValue& object, const Key& row, void* record, const Reading& at);

// Reads what an object says, whatever its kind, by the rows in their order.
template <class Record, size_t Count>
void readKeys(const JsonValue& object, const KeyOf<Record> (&rows)[Count], Record& record, const Reading& at) {
    if (!isObject(object, at)) return;
    for (const Key& row : rows) readKey(object, row, &record, at);
}

// A number brought into the range: an infinite one takes the end on its side, where there is one. False for NaN, for
// what has no end to take, and for other kinds. `index`: the element of the key's list that the value is.
bool readNumber(const JsonValue& value, Range range, float& number, const Reading& object, std::string_view key,
                int index = -1);
