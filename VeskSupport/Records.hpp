#pragma once

#include "VeskSupport/Instant.hpp"
#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/Json.hpp"
#include "VeskSupport/Uuid.hpp"

#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

namespace vesk {

// A record is a plain aggregate with one table beside it that names each field's key, member and rule:
//
//     struct Person { std::string name; std::optional<std::string> nickname; bool member = false; };
//     template <> inline constexpr auto recordTable<Person> =
//         recordFields(required("name", &Person::name), optional("nickname", &Person::nickname),
//                      defaulted("member", &Person::member));
//
// Writing leaves absent optionals out. Reading ignores unknown keys; a missing or null required key and a value of the
// wrong type fail with the path of the field; a missing or null optional is absent; a missing or null defaulted field
// keeps the member's own initial value, and a missing or null derived field is made from the fields above it. A field
// that others spell in another way, `optional("nickName", &Person::nickname).orElse("nick_name")`, is read under that
// key where its own is missing or null, and always written under its own.
//
// An Instant is a string of ISO 8601 without a fraction of a second, always written in UTC; a Uuid is its canonical
// text, always written in upper case. A type that needs more care declares `read` and `toJson` beside itself.

enum class FieldRule { required, optional, defaulted };

template <class Record, class Value> struct Field {
    std::string_view key;
    Value Record::*member;
    FieldRule rule;
    /// The other spelling; empty for none.
    std::string_view otherKey{};
    /// What a missing derived field is.
    Value (*derive)(const Record&) = nullptr;

    constexpr Field orElse(std::string_view other) const { return {key, member, rule, other, derive}; }
};

template <class Record, class Value> constexpr auto required(std::string_view key, Value Record::*member) {
    return Field<Record, Value>{key, member, FieldRule::required};
}
template <class Record, class Value>
constexpr auto optional(std::string_view key, std::optional<Value> Record::*member) {
    return Field<Record, std::optional<Value>>{key, member, FieldRule::optional};
}
template <class Record, class Value> constexpr auto defaulted(std::string_view key, Value Record::*member) {
    return Field<Record, Value>{key, member, FieldRule::defaulted};
}
/// `derive` sees the fields that stand above this one in the table.
template <class Record, class Value>
constexpr auto derived(std::string_view key, Value Record::*member, Value (*derive)(const Record&)) {
    return Field<Record, Value>{key, member, FieldRule::defaulted, {}, derive};
}
template <class... Fields> constexpr auto recordFields(Fields... fields) { return std::tuple<Fields...>{fields...}; }

/// The table of a record; specialised beside it.
template <class T> inline constexpr auto recordTable = nullptr;
/// The raw strings of an enumeration in declaration order, as a std::array of pairs; specialised beside it.
template <class T> inline constexpr auto rawValueTable = nullptr;

template <class T>
concept Record = !std::is_null_pointer_v<std::remove_const_t<decltype(recordTable<T>)>>;
template <class T>
concept RawEnumeration = std::is_enum_v<T> && !std::is_null_pointer_v<std::remove_const_t<decltype(rawValueTable<T>)>>;

template <RawEnumeration E> constexpr std::string_view rawValue(E value) {
    for (const auto& [candidate, raw] : rawValueTable<E>)
        if (candidate == value) return raw;
    return {};
}
template <RawEnumeration E> constexpr std::optional<E> fromRawValue(std::string_view text) {
    for (const auto& [candidate, raw] : rawValueTable<E>)
        if (raw == text) return candidate;
    return std::nullopt;
}

// ---- Writing

inline JsonValue toJson(bool v) { return {v}; }
inline JsonValue toJson(double v) { return {v}; }
inline JsonValue toJson(const std::string& v) { return {v}; }
inline JsonValue toJson(const JsonValue& v) { return v; }
inline JsonValue toJson(Instant v) { return {formatInternetDateTime(v, std::chrono::seconds(0))}; }
inline JsonValue toJson(const Uuid& v) { return {v.text()}; }
template <std::integral T>
    requires(!std::same_as<T, bool>)
JsonValue toJson(T v) {
    return {static_cast<std::int64_t>(v)};
}
template <RawEnumeration E> JsonValue toJson(E v) { return {std::string(rawValue(v))}; }
template <Record R> JsonValue toJson(const R& record);
template <class T> JsonValue toJson(const std::vector<T>& list) {
    JsonValue::Array result;
    result.reserve(list.size());
    for (const T& item : list) result.push_back(toJson(item));
    return {std::move(result)};
}
template <class T> JsonValue toJson(const std::map<std::string, T>& values) {
    JsonObject::Members members;
    members.reserve(values.size());
    for (const auto& [key, value] : values) members.emplace_back(key, toJson(value));
    return {JsonObject(std::move(members))};
}

template <Record R> JsonValue toJson(const R& record) {
    JsonObject::Members members;
    members.reserve(std::tuple_size_v<std::remove_const_t<decltype(recordTable<R>)>>);
    const auto write = [&](const auto& field) {
        const auto& value = record.*field.member;
        if constexpr (requires { value.has_value(); }) {
            if (value) members.emplace_back(field.key, toJson(*value));
        } else {
            members.emplace_back(field.key, toJson(value));
        }
    };
    std::apply([&](const auto&... field) { (write(field), ...); }, recordTable<R>);
    return {JsonObject(std::move(members))};
}

// ---- Reading

namespace records {

/// Where a value stands in the document, as a chain up to it: it becomes text only in the failure that names it.
class Path {
public:
    Path() = default;
    Path(const Path& parent, std::string_view key) : parent_(&parent), key_(key) {}
    Path(const Path& list, std::size_t index) : parent_(&list), index_(index) {}
    Path(const Path&) = delete;
    Path& operator=(const Path&) = delete;

    /// `inner[1].count`; empty for the document itself.
    std::string text() const {
        if (parent_ == nullptr) return {};
        std::string above = parent_->text();
        if (index_) return above + "[" + std::to_string(*index_) + "]";
        if (!above.empty()) above += '.';
        return above.append(key_);
    }

private:
    const Path* parent_ = nullptr;
    std::string_view key_;
    std::optional<std::size_t> index_;
};

[[noreturn]] inline void failMistyped(const Path& path, std::string_view expected) {
    const std::string text = path.text();
    throw DecodingError(DecodingError::Kind::corrupt,
                        "The data cannot be read: " + (text.empty() ? "the document" : text) + " is not "
                            + std::string(expected) + ".");
}
[[noreturn]] inline void failMissing(const Path& path) {
    throw DecodingError(DecodingError::Kind::keyNotFound, "The data cannot be read: " + path.text() + " is missing.");
}

/// `"letter", "a4"`.
template <RawEnumeration E> std::string knownWords() {
    std::string words;
    for (const auto& [value, raw] : rawValueTable<E>)
        words.append(words.empty() ? "\"" : ", \"").append(raw).append("\"");
    return words;
}

template <class T> T& expect(JsonValue& json, const Path& path, std::string_view expected) {
    T* value = std::get_if<T>(&json.value);
    if (value == nullptr) failMistyped(path, expected);
    return *value;
}

// Each moves out of `json` what it keeps.

inline void read(JsonValue& json, const Path& path, bool& out) { out = expect<bool>(json, path, "a boolean"); }
inline void read(JsonValue& json, const Path& path, std::string& out) {
    out = std::move(expect<std::string>(json, path, "a string"));
}
inline void read(JsonValue& json, const Path&, JsonValue& out) { out = std::move(json); }
inline void read(JsonValue& json, const Path& path, Instant& out) {
    const auto value = parseInternetDateTime(expect<std::string>(json, path, "a string"), FractionalSeconds::refused);
    if (!value) failMistyped(path, "a date of ISO 8601");
    out = *value;
}
inline void read(JsonValue& json, const Path& path, Uuid& out) {
    const auto value = Uuid::parse(expect<std::string>(json, path, "a string"));
    if (!value) failMistyped(path, "a UUID");
    out = *value;
}
inline void read(JsonValue& json, const Path& path, double& out) {
    if (const auto* whole = std::get_if<std::int64_t>(&json.value))
        out = static_cast<double>(*whole);
    else
        out = expect<double>(json, path, "a number");
}
template <std::integral T>
    requires(!std::same_as<T, bool>)
void read(JsonValue& json, const Path& path, T& out) {
    std::int64_t whole = 0;
    if (const auto* real = std::get_if<double>(&json.value)) {
        // From 2^53 on a double may stand for another whole number than was written, or for one that has a fraction. A
        // fraction is refused, 3.0 is not.
        if (!(std::abs(*real) < 9007199254740992.0)) failMistyped(path, "a whole number");
        whole = static_cast<std::int64_t>(*real);
        if (static_cast<double>(whole) != *real) failMistyped(path, "a whole number");
    } else {
        whole = expect<std::int64_t>(json, path, "a whole number");
    }
    if (!std::in_range<T>(whole)) failMistyped(path, "a whole number within its range");
    out = static_cast<T>(whole);
}
template <RawEnumeration E> void read(JsonValue& json, const Path& path, E& out) {
    const auto value = fromRawValue<E>(expect<std::string>(json, path, "a string"));
    if (!value) failMistyped(path, "one of " + knownWords<E>());
    out = *value;
}
template <Record R> void read(JsonValue& json, const Path& path, R& out);
template <class T> void read(JsonValue& json, const Path& path, std::vector<T>& out) {
    auto& list = expect<JsonValue::Array>(json, path, "a list");
    out.clear();
    out.reserve(list.size());
    for (JsonValue& item : list) {
        const Path itemPath(path, out.size());
        read(item, itemPath, out.emplace_back());
    }
}
template <class T> void read(JsonValue& json, const Path& path, std::map<std::string, T>& out) {
    out.clear();
    for (auto& [key, value] : expect<JsonValue::Object>(json, path, "an object"))
        read(value, Path(path, key), out[key]);
}
template <class T> void read(JsonValue& json, const Path& path, std::optional<T>& out) {
    read(json, path, out.emplace());
}

/// The value of a key; null where it is missing or null itself.
inline JsonValue* present(JsonValue::Object& object, std::string_view key) {
    const auto found = object.find(key);
    const bool absent = found == object.end() || std::holds_alternative<std::nullptr_t>(found->second.value);
    return absent ? nullptr : &found->second;
}

template <Record R> void read(JsonValue& json, const Path& path, R& out) {
    auto& object = expect<JsonValue::Object>(json, path, "an object");
    const auto readField = [&](const auto& field) {
        std::string_view key = field.key;
        JsonValue* value = present(object, key);
        if (value == nullptr && !field.otherKey.empty()) value = present(object, key = field.otherKey);
        if (value != nullptr)
            read(*value, Path(path, key), out.*field.member);
        else if (field.rule == FieldRule::required)
            failMissing(Path(path, field.key));
        else if (field.derive != nullptr)
            out.*field.member = field.derive(out);
    };
    std::apply([&](const auto&... field) { (readField(field), ...); }, recordTable<R>);
}

} // namespace records

/// Reads a record from a JSON value, which it takes apart. Throws DecodingError.
template <Record R> R fromJson(JsonValue json) {
    using records::read; // and what stands beside the record
    R record{};
    read(json, records::Path{}, record);
    return record;
}

} // namespace vesk
