#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"

#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vesk::test {

/// An element with attributes in memory.
class FakeElement : public AccessibilityElement {
public:
    std::map<std::string, AccessibilityValue, std::less<>> values;
    std::set<std::string, std::less<>> settable;

    FakeElement& with(const std::string& attribute, AccessibilityValue value) {
        values.insert_or_assign(attribute, std::move(value));
        return *this;
    }
    FakeElement& withText(const std::string& attribute, const std::string& text) { return with(attribute, {text}); }
    FakeElement& withFlag(const std::string& attribute, bool flag) { return with(attribute, {flag}); }
    FakeElement& withSettable(const std::string& attribute) {
        settable.insert(attribute);
        return *this;
    }
};

using FakeElementHandle = std::shared_ptr<FakeElement>;

inline FakeElementHandle fakeElement() { return std::make_shared<FakeElement>(); }

inline AccessibilityValue elementValue(const FakeElementHandle& element) {
    return {AccessibilityElementHandle(element)};
}

inline AccessibilityValue elementsValue(const std::vector<FakeElementHandle>& elements) {
    AccessibilityValue::Array items;
    for (const FakeElementHandle& element : elements) items.push_back(elementValue(element));
    return {std::move(items)};
}

/// Applications with trees of fake elements. Every element that is read and every value that is set is recorded; with
/// `accepts` false no value is taken.
class FakeAccessibilityTree : public AccessibilityTree {
public:
    std::map<std::int32_t, FakeElementHandle> applications;
    bool accepts = true;
    std::vector<AccessibilityElementHandle> visited;
    /// The element, then "ATTRIBUTE=TEXT".
    std::vector<std::pair<AccessibilityElementHandle, std::string>> set;

    Task<AccessibilityElementHandle> applicationElement(std::int32_t processIdentifier) override {
        auto& application = applications[processIdentifier];
        if (!application) application = fakeElement();
        co_return application;
    }

    Task<std::vector<AccessibilityAnswer>> read(std::vector<AccessibilityElementHandle> elements,
                                                AccessibilityQuery query) override {
        std::vector<AccessibilityAnswer> answers;
        answers.reserve(elements.size());
        for (const AccessibilityElementHandle& element : elements) {
            visited.push_back(element);
            answers.push_back(answerOf(dynamic_cast<const FakeElement&>(*element), query));
        }
        co_return answers;
    }

    Task<bool> setValue(AccessibilityElementHandle element, std::string attribute, std::string text) override {
        if (!accepts) co_return false;
        set.emplace_back(element, attribute + "=" + text);
        co_return true;
    }

private:
    static AccessibilityAnswer answerOf(const FakeElement& element, const AccessibilityQuery& query) {
        AccessibilityAnswer answer;
        for (const std::string& attribute : query.attributes)
            if (const auto found = element.values.find(attribute); found != element.values.end())
                answer.values.insert(*found);
        for (const std::string& attribute : query.settable)
            if (element.settable.contains(attribute)) answer.settable.insert(attribute);
        return answer;
    }
};

} // namespace vesk::test
