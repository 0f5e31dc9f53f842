#include "VeskPlatform/Portable/PropertyListJson.hpp"

#include <utility>
#include <variant>

namespace vesk {
namespace {

struct JsonOf {
    JsonValue operator()(std::monostate) const { return {}; }
    JsonValue operator()(const PropertyListValue::Data&) const { return {}; }
    JsonValue operator()(const PropertyListValue::Array& array) const {
        JsonValue::Array result;
        result.reserve(array.size());
        for (const PropertyListValue& item : array) result.push_back(jsonOf(item));
        return {std::move(result)};
    }
    JsonValue operator()(const PropertyListValue::Dictionary& dictionary) const {
        JsonValue::Object result;
        for (const auto& [key, item] : dictionary) result.emplace(key, jsonOf(item));
        return {std::move(result)};
    }
    template <class T> JsonValue operator()(const T& value) const { return {value}; }
};

} // namespace

JsonValue jsonOf(const PropertyListValue& value) { return std::visit(JsonOf{}, value.value); }

} // namespace vesk
