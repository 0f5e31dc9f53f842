#include "VeskPlatform/Apple/AXAttributeValue.hpp"

#include "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskPlatform/Apple/QuartzGeometry.hpp"

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <cstdint>
#include <utility>

namespace vesk {

namespace {

using Value = std::optional<AccessibilityValue>;

constexpr auto pointType = static_cast<AXValueType>(1);
constexpr auto sizeType = static_cast<AXValueType>(2);
static_assert(pointType == kAXValueTypeCGPoint && sizeType == kAXValueTypeCGSize);

template <class T> Value valueOf(T value) { return AccessibilityValue{std::move(value)}; }

template <class T> std::optional<T> unpacked(AXValueRef value, AXValueType type) {
    T unpacked{};
    if (AXValueGetType(value) != type || AXValueGetValue(value, type, &unpacked) == 0) return std::nullopt;
    return unpacked;
}

Value geometry(AXValueRef value) {
    if (const auto point = unpacked<CGPoint>(value, pointType)) return valueOf(screenPoint(*point));
    if (const auto size = unpacked<CGSize>(value, sizeType)) return valueOf(screenSize(*size));
    return std::nullopt;
}

/// A number that fits none of the two types is told as near as can be.
Value number(CFNumberRef value) {
    std::int64_t whole = 0;
    double real = 0;
    if (CFNumberIsFloatType(value) == 0 && CFNumberGetValue(value, kCFNumberSInt64Type, &whole) != 0)
        return valueOf(whole);
    CFNumberGetValue(value, kCFNumberDoubleType, &real);
    return valueOf(real);
}

Value items(CFArrayRef array, AXElements& elements) {
    AccessibilityValue::Array items;
    for (CFIndex index = 0; index < CFArrayGetCount(array); ++index)
        if (const CFTypeRef item = CFArrayGetValueAtIndex(array, index))
            if (Value value = accessibilityValue(item, elements)) items.push_back(*std::move(value));
    return valueOf(std::move(items));
}

} // namespace

std::optional<AccessibilityValue> accessibilityValue(CFTypeRef value, AXElements& elements) {
    const CFTypeID type = CFGetTypeID(value);
    if (type == CFStringGetTypeID()) return valueOf(utf8((__bridge NSString*)value));
    if (type == CFBooleanGetTypeID()) return valueOf(CFBooleanGetValue(static_cast<CFBooleanRef>(value)) != 0);
    if (type == CFNumberGetTypeID()) return number(static_cast<CFNumberRef>(value));
    if (type == AXValueGetTypeID()) return geometry(static_cast<AXValueRef>(value));
    if (type == CFArrayGetTypeID()) return items(static_cast<CFArrayRef>(value), elements);
    if (type != AXUIElementGetTypeID()) return std::nullopt;
    const AccessibilityElementHandle element = elements.handle(retained(static_cast<AXUIElementRef>(value)));
    return valueOf(element);
}

} // namespace vesk
