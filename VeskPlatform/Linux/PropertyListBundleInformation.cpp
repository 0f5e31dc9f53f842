#include "VeskPlatform/Linux/PropertyListBundleInformation.hpp"

#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/Linux/ElfSection.hpp"
#include "VeskPlatform/Linux/PropertyList.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <utility>

namespace vesk {

namespace {

constexpr std::uint64_t mostBytes = std::uint64_t{1} << 20;

JsonValue::Object dictionaryOf(const std::string& bytes) {
    auto list = parsePropertyList(bytes);
    auto* dictionary = list ? std::get_if<JsonValue::Object>(&list->value) : nullptr;
    return dictionary == nullptr ? JsonValue::Object{} : std::move(*dictionary);
}

bool isBundle(const std::string& path) { return path.ends_with(".app"); }

} // namespace

JsonValue::Object PropertyListBundleInformation::informationDictionary(const Bundle& bundle) {
    return isBundle(bundle.path) ? dictionaryIn(bundle.path + "/Contents/Info.plist") : JsonValue::Object{};
}

JsonValue::Object PropertyListBundleInformation::entitlements(const std::string& path) {
    if (isBundle(path)) return dictionaryIn(path + "/Contents/entitlements.plist");
    const auto section = elfSection(path, ".vesk.entitlements");
    return section ? dictionaryOf(*section) : JsonValue::Object{};
}

JsonValue::Object PropertyListBundleInformation::dictionaryIn(const std::string& path) {
    try {
        return dictionaryOf(files_.contents(path, mostBytes));
    } catch (const PosixError&) { // what cannot be read is not there
        return {};
    }
}

} // namespace vesk
