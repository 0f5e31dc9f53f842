#include "VeskPlatform/Apple/AXQuestions.hpp"

#include "VeskPlatform/Apple/AXAttributeValue.hpp"
#include "VeskPlatform/Apple/FoundationValues.hpp"

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <chrono>
#include <optional>

namespace vesk {

namespace {

/// A refusal comes at once, and the same error after seconds where nobody answered.
constexpr std::chrono::seconds longestRefusal{1};

} // namespace

AccessibilityAnswer AXQuestions::answerTo(const AXElement& element, const AccessibilityQuery& query) {
    AccessibilityAnswer answer;
    for (const std::string& attribute : query.attributes)
        if (auto read = value(element, attribute)) answer.values.emplace(attribute, *std::move(read));
    for (const std::string& attribute : query.settable)
        if (isSettable(element, attribute)) answer.settable.insert(attribute);
    return answer;
}

std::optional<AccessibilityValue> AXQuestions::value(const AXElement& element, const std::string& attribute) {
    CFOwned<CFTypeRef> value;
    const bool isRead = isAnswered([&] {
        return AXUIElementCopyAttributeValue(element.get(), (__bridge CFStringRef)nsString(attribute), value.out());
    });
    return isRead && value ? accessibilityValue(value.get(), elements_) : std::nullopt;
}

bool AXQuestions::isSettable(const AXElement& element, const std::string& attribute) {
    Boolean settable = 0;
    const bool isTold = isAnswered([&] {
        return AXUIElementIsAttributeSettable(element.get(), (__bridge CFStringRef)nsString(attribute), &settable);
    });
    return isTold && settable != 0;
}

bool AXQuestions::isAnswered(const std::function<AXError()>& question) {
    if (isSilent_) return false;
    const auto start = std::chrono::steady_clock::now();
    const AXError error = question();
    const bool isLate = std::chrono::steady_clock::now() - start > longestRefusal;
    isSilent_ = error == kAXErrorCannotComplete && isLate;
    return error == kAXErrorSuccess;
}

} // namespace vesk
