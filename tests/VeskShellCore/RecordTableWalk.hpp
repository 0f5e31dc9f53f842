#pragma once

#include "tests/VeskShellCore/GoldenRecords.hpp"

#include <algorithm>
#include <fstream>
#include <functional>
#include <iterator>
#include <sstream>
#include <variant>

// The tests that every record has to pass: what it reads and writes, and what each key of its table does where it is
// missing, null, unknown or of another type. A file of tests gives `sampleOf` for its records and names them in
//
//     using AllRecords = testing::Types<PackagedMemoryRecord, …>;
//     INSTANTIATE_TYPED_TEST_SUITE_P(PackagedMemories, RecordTable, AllRecords, RecordNames);

namespace vesk::test {

template <class R> using BooleanMember = std::variant<bool R::*, std::optional<bool> R::*>;

/// What a test knows of a record apart from its table, so that a wrong table does not agree with itself.
template <class R> struct RecordSample {
    /// The record's name, and that of its document in tests/data/records: every key has a value there, and no list or
    /// object that a key holds is empty.
    std::string name;
    /// What the document says.
    R record;
    /// The keys of each rule, with blanks between them.
    std::string required{}, optional{}, defaulted{}, derived{};
    /// Keys with their other spelling, `displayName:display_name`.
    std::string spellings{};
    /// Where there are several: the two values of a Boolean do not tell one field from another.
    std::vector<std::pair<std::string, BooleanMember<R>>> booleans{};
};

template <class R> RecordSample<R> sampleOf();

struct RecordNames {
    template <class R> static std::string GetName(int) { return sampleOf<R>().name; }
};

inline std::string goldenDocument(const std::string& record) {
    std::ifstream file(VESK_SOURCE_DIR "/tests/data/records/" + record + ".json", std::ios::binary);
    EXPECT_TRUE(file.is_open()) << record;
    std::string text{std::istreambuf_iterator<char>(file), {}};
    if (text.ends_with('\n')) text.pop_back();
    return text;
}

inline JsonValue::Object objectOf(const JsonValue& document) { return std::get<JsonValue::Object>(document.value); }

inline JsonValue with(JsonValue::Object object, const std::string& key, JsonValue value) {
    object[key] = std::move(value);
    return {std::move(object)};
}
inline JsonValue without(JsonValue::Object object, const std::string& key) {
    object.erase(key);
    return {std::move(object)};
}

/// `4865 The data cannot be read: name is missing.`, or that there was no failure.
template <class R> std::string failureOf(const JsonValue& document) {
    try {
        fromJson<R>(document);
    } catch (const DecodingError& error) {
        return std::to_string(error.code()) + " " + error.description();
    }
    return "no failure";
}
inline std::string missing(const std::string& path) { return "4865 The data cannot be read: " + path + " is missing."; }
inline std::string mistyped(const std::string& path) { return "4864 The data cannot be read: " + path + " is not "; }

template <class R> void forEachField(const auto& visit) {
    std::apply([&](const auto&... field) { (visit(field), ...); }, recordTable<R>);
}

inline std::vector<std::string> sortedWords(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> words{std::istream_iterator<std::string>(stream), {}};
    std::sort(words.begin(), words.end());
    return words;
}

/// Documents that differ from `right` in a value of a type that V is not, with the path at which it stands.
using WrongValueVisitor = std::function<void(const std::string& path, const JsonValue& wrong)>;

template <class V> struct WrongValues {
    static void visit(const JsonValue& right, const std::string& path, const WrongValueVisitor& visitor) {
        const JsonValue others[] = {{true},
                                    {std::int64_t{7}},
                                    {1.5},
                                    {std::string("no such word")},
                                    {JsonValue::Array{}},
                                    {JsonValue::Object{}}};
        for (const JsonValue& other : others)
            if (RawEnumeration<V> || other.value.index() != right.value.index()) visitor(path, other);
    }
};
template <class T> struct WrongValues<std::optional<T>> : WrongValues<T> {};
template <class T> struct WrongValues<std::vector<T>> {
    static void visit(const JsonValue& right, const std::string& path, const WrongValueVisitor& visitor) {
        WrongValues<std::monostate>::visit(right, path, visitor);
        const auto& list = std::get<JsonValue::Array>(right.value);
        const WrongValueVisitor wrongItem = [&](const std::string& itemPath, const JsonValue& wrong) {
            auto changed = list;
            changed.push_back(wrong);
            visitor(itemPath, {std::move(changed)});
        };
        const std::string itemPath = path + "[" + std::to_string(list.size()) + "]";
        wrongItem(itemPath, {nullptr});
        WrongValues<T>::visit(list.at(0), itemPath, wrongItem);
    }
};
template <class T> struct WrongValues<std::map<std::string, T>> {
    static void visit(const JsonValue& right, const std::string& path, const WrongValueVisitor& visitor) {
        WrongValues<std::monostate>::visit(right, path, visitor);
        const auto& entries = std::get<JsonValue::Object>(right.value);
        const WrongValueVisitor wrongEntry = [&](const std::string& entryPath, const JsonValue& wrong) {
            visitor(entryPath, with(entries, "wrong", wrong));
        };
        wrongEntry(path + ".wrong", {nullptr});
        WrongValues<T>::visit(entries.begin()->second, path + ".wrong", wrongEntry);
    }
};

template <class R> class RecordTable : public testing::Test {
protected:
    const RecordSample<R> sample = sampleOf<R>();
    const std::string text = goldenDocument(sample.name);
    const JsonValue::Object document = objectOf(parseJson(text));

    /// What the sample is without the field's key.
    template <class V> R recordWithout(const Field<R, V>& field) const {
        R record = sample.record;
        record.*field.member = field.derive == nullptr ? V{} : field.derive(record);
        return record;
    }

    /// Expects of a document without a value for the field what the field's rule says.
    void expectRule(const auto& field, const JsonValue& without) {
        if (field.rule == FieldRule::required)
            EXPECT_EQ(failureOf<R>(without), missing(std::string(field.key)));
        else
            EXPECT_EQ(fromJson<R>(without), recordWithout(field));
    }

    void expectWrongValuesRefused(const auto& field, const std::string& key, const JsonValue::Object& surroundings) {
        using V = std::remove_cvref_t<decltype(sample.record.*field.member)>;
        const JsonValue& right = document.at(std::string(field.key));
        WrongValues<V>::visit(right, key, [&](const std::string& path, const JsonValue& wrong) {
            EXPECT_TRUE(failureOf<R>(with(surroundings, key, wrong)).starts_with(mistyped(path))) << writeJson(wrong);
        });
    }
};
TYPED_TEST_SUITE_P(RecordTable);

TYPED_TEST_P(RecordTable, IsReadFromItsDocumentAndWrittenAsIt) {
    EXPECT_EQ(expectGolden<TypeParam>(this->text), this->sample.record);
    for (const auto& [key, member] : this->sample.booleans) {
        SCOPED_TRACE(key);
        const bool turned = !std::get<bool>(this->document.at(key).value);
        TypeParam expected = this->sample.record;
        std::visit([&](auto pointer) { expected.*pointer = turned; }, member);
        EXPECT_EQ(fromJson<TypeParam>(with(this->document, key, {turned})), expected);
    }
}

TYPED_TEST_P(RecordTable, HasItsKeysWithTheirRules) {
    std::string required, optional, defaulted, derived, spellings, keys;
    forEachField<TypeParam>([&](const auto& field) {
        std::string& words = field.rule == FieldRule::required   ? required
                             : field.rule == FieldRule::optional ? optional
                             : field.derive == nullptr           ? defaulted
                                                                 : derived;
        words.append(" ").append(field.key);
        keys.append(" ").append(field.key);
        if (!field.otherKey.empty()) spellings.append(" ").append(field.key).append(":").append(field.otherKey);
    });
    EXPECT_EQ(sortedWords(required), sortedWords(this->sample.required));
    EXPECT_EQ(sortedWords(optional), sortedWords(this->sample.optional));
    EXPECT_EQ(sortedWords(defaulted), sortedWords(this->sample.defaulted));
    EXPECT_EQ(sortedWords(derived), sortedWords(this->sample.derived));
    EXPECT_EQ(sortedWords(spellings), sortedWords(this->sample.spellings));
    std::string documentKeys;
    for (const auto& [key, value] : this->document) documentKeys.append(" ").append(key);
    EXPECT_EQ(sortedWords(keys), sortedWords(documentKeys));
}

TYPED_TEST_P(RecordTable, TreatsMissingAndNullKeysByTheirRules) {
    forEachField<TypeParam>([&](const auto& field) {
        const std::string key(field.key);
        SCOPED_TRACE(key);
        this->expectRule(field, without(this->document, key));
        this->expectRule(field, with(this->document, key, {nullptr}));
    });
}

TYPED_TEST_P(RecordTable, RefusesMistypedValuesByTheirPath) {
    forEachField<TypeParam>(
        [&](const auto& field) { this->expectWrongValuesRefused(field, std::string(field.key), this->document); });
    EXPECT_TRUE(failureOf<TypeParam>({JsonValue::Array{}}).starts_with(mistyped("the document")));
}

TYPED_TEST_P(RecordTable, IgnoresUnknownKeys) {
    const JsonValue more[] = {{nullptr}, {true}, {std::string("x")}, {JsonValue::Array{}}, {JsonValue::Object{}}};
    for (const JsonValue& value : more)
        EXPECT_EQ(fromJson<TypeParam>(with(this->document, "unknownKey", value)), this->sample.record);
}

REGISTER_TYPED_TEST_SUITE_P(RecordTable, IsReadFromItsDocumentAndWrittenAsIt, HasItsKeysWithTheirRules,
                            TreatsMissingAndNullKeysByTheirRules, RefusesMistypedValuesByTheirPath, IgnoresUnknownKeys);

/// For the records of which some keys have two spellings.
template <class R> class RecordSpellings : public RecordTable<R> {
protected:
    /// Calls with the field, its own key, its other key and a value for it.
    void forEachSpelling(const auto& visit) {
        forEachField<R>([&](const auto& field) {
            if (field.otherKey.empty()) return;
            const std::string key(field.key);
            SCOPED_TRACE(key);
            visit(field, key, std::string(field.otherKey), this->document.at(key));
        });
    }
};
TYPED_TEST_SUITE_P(RecordSpellings);

TYPED_TEST_P(RecordSpellings, AreReadInTheirOrder) {
    this->forEachSpelling([&](const auto& field, const auto& key, const auto& other, const JsonValue& value) {
        const auto& whole = this->document;
        const auto bare = objectOf(without(whole, key));
        EXPECT_EQ(fromJson<TypeParam>(with(bare, other, value)), this->sample.record);
        EXPECT_EQ(fromJson<TypeParam>(with(objectOf(with(whole, key, {nullptr})), other, value)), this->sample.record);
        EXPECT_EQ(fromJson<TypeParam>(with(bare, other, {nullptr})), this->recordWithout(field));
        EXPECT_EQ(fromJson<TypeParam>(with(whole, other, {JsonValue::Array{}})), this->sample.record);
    });
}

TYPED_TEST_P(RecordSpellings, AreRefusedWhereTheOneThatIsReadIsMistyped) {
    this->forEachSpelling([&](const auto& field, const auto& key, const auto& other, const JsonValue& value) {
        this->expectWrongValuesRefused(field, key, objectOf(with(this->document, other, value)));
        this->expectWrongValuesRefused(field, other, objectOf(without(this->document, key)));
    });
}

TYPED_TEST_P(RecordSpellings, AreWrittenAsTheFirst) {
    JsonValue::Object second = this->document;
    this->forEachSpelling([&](const auto&, const auto& key, const auto& other, const JsonValue& value) {
        second.erase(key);
        second[other] = value;
    });
    EXPECT_EQ(writeJson(toJson(fromJson<TypeParam>({second}))), this->text);
}

REGISTER_TYPED_TEST_SUITE_P(RecordSpellings, AreReadInTheirOrder, AreRefusedWhereTheOneThatIsReadIsMistyped,
                            AreWrittenAsTheFirst);

} // namespace vesk::test
