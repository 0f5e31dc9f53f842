#include "VeskShellCore/ReleaseStateSecretArchive.hpp"

#include "VeskSupport/Json.hpp"

#include <optional>
#include <type_traits>

namespace vesk {
namespace {

template <class T> constexpr const char* kindName = "";
template <> constexpr const char* kindName<std::string> = "text";
template <> constexpr const char* kindName<PropertyListValue::Data> = "data";
template <> constexpr const char* kindName<PropertyListValue::Array> = "an array";
template <> constexpr const char* kindName<PropertyListValue::Dictionary> = "a dictionary";

[[noreturn]] void refuse(const std::string& path, const char* kind) {
    throw DecodingError(DecodingError::Kind::corrupt, "The data cannot be read: " + path + " is not " + kind + ".");
}

template <class T> const T& as(const PropertyListValue& value, const std::string& path) {
    const T* held = std::get_if<T>(&value.value);
    if (held == nullptr) refuse(path, kindName<T>);
    return *held;
}

/// A whole number may stand as a real one.
std::int64_t number(const PropertyListValue& value, const std::string& path) {
    constexpr double bound = 9223372036854775808.0;
    if (const auto* held = std::get_if<std::int64_t>(&value.value)) return *held;
    const auto* real = std::get_if<double>(&value.value);
    if (real == nullptr || !(*real >= -bound && *real < bound)) refuse(path, "a whole number");
    const auto whole = static_cast<std::int64_t>(*real);
    if (static_cast<double>(whole) != *real) refuse(path, "a whole number");
    return whole;
}

const PropertyListValue& field(const PropertyListValue::Dictionary& fields, const std::string& key) {
    const auto found = fields.find(key);
    if (found == fields.end())
        throw DecodingError(DecodingError::Kind::keyNotFound, "The data cannot be read: " + key + " is missing.");
    return found->second;
}

std::vector<std::string> texts(const PropertyListValue& value, const std::string& path) {
    std::vector<std::string> result;
    for (const PropertyListValue& item : as<PropertyListValue::Array>(value, path))
        result.push_back(as<std::string>(item, path + "[" + std::to_string(result.size()) + "]"));
    return result;
}

std::map<std::string, std::string> data(const PropertyListValue& value, const std::string& path) {
    std::map<std::string, std::string> result;
    for (const auto& [key, item] : as<PropertyListValue::Dictionary>(value, path))
        result.emplace(key, as<PropertyListValue::Data>(item, path + "." + key).bytes);
    return result;
}

} // namespace

PropertyListValue toPropertyList(const ReleaseStateSecretArchive& archive) {
    PropertyListValue::Array accounts;
    for (const std::string& account : archive.accounts) accounts.push_back({account});
    PropertyListValue::Dictionary values;
    for (const auto& [account, bytes] : archive.values) values[account] = {PropertyListValue::Data{bytes}};
    return {PropertyListValue::Dictionary{{"schemaVersion", {archive.schemaVersion}},
                                          {"sourceService", {archive.sourceService}},
                                          {"accounts", {std::move(accounts)}},
                                          {"values", {std::move(values)}}}};
}

ReleaseStateSecretArchive readSecretArchive(const PropertyListValue& list) {
    const auto& fields = as<PropertyListValue::Dictionary>(list, "the archive");
    return {.schemaVersion = number(field(fields, "schemaVersion"), "schemaVersion"),
            .sourceService = as<std::string>(field(fields, "sourceService"), "sourceService"),
            .accounts = texts(field(fields, "accounts"), "accounts"),
            .values = data(field(fields, "values"), "values")};
}

} // namespace vesk
