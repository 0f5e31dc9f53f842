#import "VeskPlatform/Apple/PropertyListValues.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <variant>

NS_ASSUME_NONNULL_BEGIN

namespace vesk {
namespace {

constexpr int deepest = 64;

struct TooDeep {};

PropertyListValue converted(id<NSObject> _Nullable object, int depth);

/// Truth values are numbers of a class of their own.
PropertyListValue convertedNumber(NSNumber* number) {
    CFTypeRef plain = (__bridge CFTypeRef)number;
    if (CFGetTypeID(plain) == CFBooleanGetTypeID()) return {static_cast<bool>(number.boolValue)};
    if (CFNumberIsFloatType((__bridge CFNumberRef)number)) return {number.doubleValue};
    return {static_cast<std::int64_t>(number.longLongValue)};
}

PropertyListValue::Array convertedArray(NSArray<id<NSObject>>* array, int depth) {
    PropertyListValue::Array result;
    result.reserve(array.count);
    for (id<NSObject> item in array) result.push_back(converted(item, depth));
    return result;
}

PropertyListValue::Dictionary convertedDictionary(NSDictionary<NSString*, id<NSObject>>* dictionary, int depth) {
    PropertyListValue::Dictionary result;
    for (NSString* key in dictionary) result.insert_or_assign(utf8(key), converted(dictionary[key], depth));
    return result;
}

PropertyListValue converted(id<NSObject> _Nullable object, int depth) {
    if (depth > deepest) throw TooDeep{};
    if (object == nil) return {};
    id<NSObject> item = known(object);
    if ([item isKindOfClass:[NSString class]]) return {utf8(static_cast<NSString*>(item))};
    if ([item isKindOfClass:[NSNumber class]]) return convertedNumber(static_cast<NSNumber*>(item));
    if ([item isKindOfClass:[NSData class]]) return {PropertyListValue::Data{bytes(static_cast<NSData*>(item))}};
    if ([item isKindOfClass:[NSArray class]])
        return {convertedArray(static_cast<NSArray<id<NSObject>>*>(item), depth + 1)};
    if ([item isKindOfClass:[NSDictionary class]])
        return {convertedDictionary(static_cast<NSDictionary<NSString*, id<NSObject>>*>(item), depth + 1)};
    return {};
}

[[noreturn]] void cannotWrite(const std::string& what) {
    // The code with which the system itself refuses such a value.
    throw ErrorRecord("NSCocoaErrorDomain", NSPropertyListWriteInvalidError,
                      "A property list cannot hold " + what + ".");
}

NSString* wholeText(const std::string& text) {
    if (text.find('\0') != std::string::npos) cannotWrite("a text with a null byte");
    return nsString(text);
}

struct ObjectOf {
    id<NSObject> operator()(std::monostate) const { cannotWrite("a value of that kind"); }
    id<NSObject> operator()(bool value) const { return [NSNumber numberWithBool:value]; }
    id<NSObject> operator()(std::int64_t value) const { return [NSNumber numberWithLongLong:value]; }
    id<NSObject> operator()(double value) const { return [NSNumber numberWithDouble:value]; }
    id<NSObject> operator()(const std::string& value) const { return wholeText(value); }
    id<NSObject> operator()(const PropertyListValue::Data& value) const { return nsData(value.bytes); }
    id<NSObject> operator()(const PropertyListValue::Array& array) const {
        auto* result = [NSMutableArray<id<NSObject>> arrayWithCapacity:array.size()];
        for (const PropertyListValue& item : array) [result addObject:propertyListObject(item)];
        return result;
    }
    id<NSObject> operator()(const PropertyListValue::Dictionary& dictionary) const {
        auto* result = [NSMutableDictionary<NSString*, id<NSObject>> dictionaryWithCapacity:dictionary.size()];
        for (const auto& [key, item] : dictionary) result[wholeText(key)] = propertyListObject(item);
        return result;
    }
};

} // namespace

std::optional<PropertyListValue> propertyListValue(id<NSObject> _Nullable object) {
    try {
        return converted(object, 0);
    } catch (const TooDeep&) {
        return std::nullopt;
    }
}

id<NSObject> propertyListObject(const PropertyListValue& value) { return std::visit(ObjectOf{}, value.value); }

} // namespace vesk

NS_ASSUME_NONNULL_END
