#include "VeskPlatform/Apple/AXAccessibilityTree.hpp"

#include "VeskPlatform/Apple/AXQuestions.hpp"
#include "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/DetachedWork.hpp"

#import <ApplicationServices/ApplicationServices.h>
#import <Foundation/Foundation.h>

#include <functional>
#include <utility>

namespace vesk {

namespace {

using Answers = std::vector<AccessibilityAnswer>;

/// The handles that this adapter gave out.
const AXElement& own(const AccessibilityElementHandle& element) { return dynamic_cast<const AXElement&>(*element); }

Answers readAll(AXElements& known, const std::vector<AccessibilityElementHandle>& elements,
                const AccessibilityQuery& query) {
    AXQuestions questions(known);
    Answers answers;
    for (const AccessibilityElementHandle& element : elements) @autoreleasepool {
            answers.push_back(questions.answerTo(own(element), query));
        }
    return answers;
}

bool setText(const AXElement& element, const std::string& attribute, const std::string& text) {
    @autoreleasepool {
        return AXUIElementSetAttributeValue(element.get(), (__bridge CFStringRef)nsString(attribute),
                                            (__bridge CFStringRef)nsString(text))
               == kAXErrorSuccess;
    }
}

} // namespace

Task<AccessibilityElementHandle> AXAccessibilityTree::applicationElement(std::int32_t processIdentifier) {
    co_return elements_->handle(CFOwned<AXUIElementRef>(AXUIElementCreateApplication(processIdentifier)));
}

Task<Answers> AXAccessibilityTree::read(std::vector<AccessibilityElementHandle> elements, AccessibilityQuery query) {
    std::function<Answers()> work = [known = elements_, elements = std::move(elements), query = std::move(query)] {
        return readAll(*known, elements, query);
    };
    auto reading = onThreadOfItsOwn<Answers>(std::move(work));
    co_return co_await std::move(reading);
}

Task<bool> AXAccessibilityTree::setValue(AccessibilityElementHandle element, std::string attribute, std::string text) {
    std::function<bool()> work = [element = std::move(element), attribute = std::move(attribute),
                                  text = std::move(text)] { return setText(own(element), attribute, text); };
    auto setting = onThreadOfItsOwn<bool>(std::move(work));
    co_return co_await std::move(setting);
}

} // namespace vesk
