#include "VeskPlatform/Linux/PropertyList.hpp"

#include "VeskPlatform/Linux/BinaryListSize.hpp"
#include "VeskPlatform/Portable/PropertyListJson.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <cstdint>
#include <cstdlib>
#include <limits>
#include <memory>
#include <plist/plist.h>
#include <string>
#include <utility>
#include <variant>

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

PropertyListValue converted(plist_t node, int depth);

PropertyListValue::Array convertedArray(plist_t node, int depth) {
    PropertyListValue::Array array;
    const std::uint32_t count = plist_array_get_size(node);
    array.reserve(count);
    for (std::uint32_t i = 0; i < count; ++i) array.push_back(converted(plist_array_get_item(node, i), depth));
    return array;
}

PropertyListValue::Dictionary convertedDictionary(plist_t node, int depth) {
    PropertyListValue::Dictionary object;
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

PropertyListValue converted(plist_t node, int depth) {
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
    case PLIST_DATA: {
        std::uint64_t length = 0;
        const char* data = plist_get_data_ptr(node, &length);
        return {PropertyListValue::Data{data == nullptr ? std::string() : std::string(data, length)}};
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

[[noreturn]] void cannotWrite(const std::string& what) {
    constexpr std::int64_t writeInvalid = 3852; // NSPropertyListWriteInvalidError
    throw ErrorRecord("NSCocoaErrorDomain", writeInvalid, "A property list cannot hold " + what + ".");
}

/// The library takes texts up to their first null byte, and makes others of ill-formed ones.
const char* wholeText(const std::string& text) {
    if (text.find('\0') != std::string::npos) cannotWrite("a text with a null byte");
    if (!isWellFormedUtf8(text)) cannotWrite("a text that is no UTF-8");
    return text.c_str();
}

OwnedPlist node(const PropertyListValue& value);

struct NodeOf {
    plist_t operator()(std::monostate) const { cannotWrite("a value of that kind"); }
    plist_t operator()(bool value) const { return plist_new_bool(value ? 1 : 0); }
    plist_t operator()(std::int64_t value) const { return plist_new_uint(static_cast<std::uint64_t>(value)); }
    plist_t operator()(double value) const { return plist_new_real(value); }
    plist_t operator()(const std::string& value) const { return plist_new_string(wholeText(value)); }
    plist_t operator()(const PropertyListValue::Data& value) const {
        return plist_new_data(value.bytes.data(), value.bytes.size());
    }
    plist_t operator()(const PropertyListValue::Array& array) const {
        OwnedPlist result(plist_new_array());
        for (const PropertyListValue& item : array) plist_array_append_item(result.get(), node(item).release());
        return result.release();
    }
    plist_t operator()(const PropertyListValue::Dictionary& dictionary) const {
        OwnedPlist result(plist_new_dict());
        for (const auto& [key, item] : dictionary) {
            const char* name = wholeText(key); // before there is a node, since it refuses some
            plist_dict_set_item(result.get(), name, node(item).release());
        }
        return result.release();
    }
};

OwnedPlist node(const PropertyListValue& value) { return OwnedPlist(std::visit(NodeOf{}, value.value)); }

} // namespace

std::optional<PropertyListValue> readPropertyList(std::string_view bytes) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) return std::nullopt;
    if (bytes.starts_with("bplist") && !binaryListStaysSmall(bytes)) return std::nullopt;
    OwnedPlist root = parsed(bytes);
    if (root != nullptr && bytes.starts_with("bplist")) root = withHarmlessKeys(std::move(root));
    if (root == nullptr) return std::nullopt;
    try {
        return converted(root.get(), 0);
    } catch (const TooDeep&) {
        return std::nullopt;
    }
}

std::optional<JsonValue> parsePropertyList(std::string_view bytes) {
    const auto value = readPropertyList(bytes);
    return value ? std::optional(jsonOf(*value)) : std::nullopt;
}

std::string LibplistCoder::encodeBinary(const PropertyListValue& value) {
    const OwnedPlist root = node(value);
    char* bytes = nullptr;
    std::uint32_t length = 0;
    plist_to_bin(root.get(), &bytes, &length);
    const OwnedText owned(bytes);
    if (bytes == nullptr) cannotWrite("as much");
    return {bytes, length};
}

PropertyListValue LibplistCoder::decode(const std::string& bytes) {
    if (auto value = readPropertyList(bytes)) return std::move(*value);
    throw DecodingError(DecodingError::Kind::corrupt, "The data is not a valid property list.");
}

} // namespace vesk
