#include "VeskPlatform/Linux/PropertyList.hpp"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <plist/plist.h>
#include <string>
#include <utility>

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
    const std::unique_ptr<void, FreeMemory> ownedCursor(cursor);
    for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(node, cursor, &key, &value);
        const OwnedText owned(key);
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
        std::uint64_t length = 0;
        const char* text = plist_get_string_ptr(node, &length);
        return {text == nullptr ? std::string() : std::string(text, length)};
    }
    case PLIST_ARRAY: return {convertedArray(node, depth + 1)};
    case PLIST_DICT: return {convertedDictionary(node, depth + 1)};
    default: return {};
    }
}

OwnedPlist parsed(std::string_view bytes) {
    plist_t root = nullptr;
    plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    return OwnedPlist(root);
}

/// The binary form can hold keys with a NUL, and the library ends the program when it is asked for one. Written as XML
/// and read again, they are whole or gone.
OwnedPlist withHarmlessKeys(OwnedPlist root) {
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    const OwnedText owned(xml);
    return xml == nullptr ? OwnedPlist() : parsed({xml, length});
}

} // namespace

std::optional<JsonValue> parsePropertyList(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    OwnedPlist root = parsed(bytes);
    if (root != nullptr && bytes.starts_with("bplist")) root = withHarmlessKeys(std::move(root));
    if (root == nullptr) return std::nullopt;
    try {
        return converted(root.get(), 0);
    } catch (const TooDeep&) {
        return std::nullopt;
    }
}

} // namespace vesk
