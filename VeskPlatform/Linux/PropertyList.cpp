#include "VeskPlatform/Linux/PropertyList.hpp"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <plist/plist.h>
#include <string>

namespace vesk {

namespace {

struct FreePlist {
    void operator()(void* node) const { plist_free(node); }
};
struct FreeMemory {
    void operator()(void* memory) const { std::free(memory); }
};
using OwnedPlist = std::unique_ptr<void, FreePlist>;
using OwnedText = std::unique_ptr<char, FreeMemory>;

constexpr int deepest = 64;

JsonValue converted(plist_t node, int depth);

JsonValue::Array convertedArray(plist_t node, int depth) {
    JsonValue::Array array;
    const std::uint32_t count = plist_array_get_size(node);
    array.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) array.push_back(converted(plist_array_get_item(node, i), depth));
    return array;
}

JsonValue::Object convertedDictionary(plist_t node, int depth) {
    JsonValue::Object object;
    plist_dict_iter cursor = nullptr;
    plist_dict_new_iter(node, &cursor);
    const std::unique_ptr<void, FreeMemory> owned(cursor);
    for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, cursor, &key, &value);
        const OwnedText ownedKey(key);
        if (value == nullptr) return object;
        if (key != nullptr) object.insert_or_assign(key, converted(value, depth));
    }
}

struct TooDeep {};

JsonValue converted(plist_t node, int depth) {
    if (depth > deepest) throw TooDeep{};
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t value = 0;
        plist_get_bool_val(node, &value);
        return {value != 0};
    }
    case PLIST_UINT: {
        std::uint64_t value = 0;
        plist_get_uint_val(node, &value);
        return {static_cast<std::int64_t>(value)}; // negative numbers come as their two's complement
    }
    case PLIST_REAL: {
        double value = 0;
        plist_get_real_val(node, &value);
        return {value};
    }
    case PLIST_STRING: {
        char* text = nullptr;
        plist_get_string_val(node, &text);
        const OwnedText owned(text);
        return {std::string(text == nullptr ? "" : text)};
    }
    case PLIST_ARRAY: return {convertedArray(node, depth + 1)};
    case PLIST_DICT: return {convertedDictionary(node, depth + 1)};
    default: return {};
    }
}

} // namespace

std::optional<JsonValue> parsePropertyList(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    plist_t root = nullptr;
    plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    const OwnedPlist owned(root);
    if (root == nullptr) return std::nullopt;
    try {
        return converted(root, 0);
    } catch (const TooDeep&) {
        return std::nullopt;
    }
}

} // namespace vesk
