#include "VeskShellCore/AccessibilityReading.hpp"

#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace vesk {
namespace {

constexpr std::size_t longestPreview = 160;

template <class T> const T* valueOf(const AccessibilityAnswer& answer, std::string_view attribute) {
    const auto found = answer.values.find(attribute);
    return found == answer.values.end() ? nullptr : std::get_if<T>(&found->second.value);
}

template <class T> std::optional<T> copyOf(const AccessibilityAnswer& answer, std::string_view attribute) {
    const T* value = valueOf<T>(answer, attribute);
    return value == nullptr ? std::nullopt : std::optional<T>(*value);
}

std::string numberText(std::int64_t number) { return std::to_string(number); }

/// The shortest digits that mean the number; with an exponent only where it is very large or very small.
std::string numberText(double number) {
    const double magnitude = std::abs(number);
    const bool isPlain = magnitude == 0 || (magnitude >= 1e-4 && magnitude < 1e16);
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                   isPlain ? std::chars_format::fixed : std::chars_format::scientific)
                         .ptr;
    return {buffer.data(), end};
}

bool contains(const std::string& text, std::string_view word) { return text.find(word) != std::string::npos; }

} // namespace

std::optional<AccessibilityElementHandle> copyElementAttribute(const AccessibilityAnswer& answer,
                                                               std::string_view attribute) {
    return copyOf<AccessibilityElementHandle>(answer, attribute);
}

std::optional<std::string> copyStringAttribute(const AccessibilityAnswer& answer, std::string_view attribute) {
    if (const auto* whole = valueOf<std::int64_t>(answer, attribute)) return numberText(*whole);
    if (const auto* real = valueOf<double>(answer, attribute)) return numberText(*real);
    return copyOf<std::string>(answer, attribute);
}

std::optional<bool> copyBoolAttribute(const AccessibilityAnswer& answer, std::string_view attribute) {
    if (const auto* whole = valueOf<std::int64_t>(answer, attribute)) return *whole != 0;
    if (const auto* real = valueOf<double>(answer, attribute)) return *real != 0;
    return copyOf<bool>(answer, attribute);
}

std::optional<ScreenPoint> copyCGPointAttribute(const AccessibilityAnswer& answer, std::string_view attribute) {
    return copyOf<ScreenPoint>(answer, attribute);
}

std::optional<ScreenSize> copyCGSizeAttribute(const AccessibilityAnswer& answer, std::string_view attribute) {
    return copyOf<ScreenSize>(answer, attribute);
}

std::vector<AccessibilityElementHandle> copyElementArrayAttribute(const AccessibilityAnswer& answer,
                                                                  std::string_view attribute) {
    std::vector<AccessibilityElementHandle> elements;
    const auto* items = valueOf<AccessibilityValue::Array>(answer, attribute);
    if (items == nullptr) return elements;
    for (const AccessibilityValue& item : *items)
        if (const auto* element = std::get_if<AccessibilityElementHandle>(&item.value)) elements.push_back(*element);
    return elements;
}

bool isAttributeSettable(const AccessibilityAnswer& answer, std::string_view attribute) {
    return answer.settable.contains(attribute);
}

bool inferEditable(const std::optional<std::string>& role, const std::optional<std::string>& subrole) {
    const std::string lowerRole = lowercased(role.value_or(""));
    if (contains(lowerRole, "textfield") || contains(lowerRole, "textarea") || contains(lowerRole, "searchfield"))
        return true;
    const std::string lowerSubrole = lowercased(subrole.value_or(""));
    return contains(lowerSubrole, "search") || contains(lowerSubrole, "text");
}

std::optional<std::string> previewOf(const std::optional<std::string>& text) {
    if (!text) return std::nullopt;
    // An application's text may be ill-formed; characters can only be counted in text that is not.
    std::string line = repairedUtf8(*text);
    std::ranges::replace(line, '\n', ' ');
    const std::string_view kept = trimmed(line);
    if (kept.empty()) return std::nullopt;
    if (characterCount(kept) <= longestPreview) return std::string(kept);
    return std::string(firstCharacters(kept, longestPreview - 1)) + "…";
}

Task<AccessibilityAnswer> readElement(AccessibilityTree& tree, AccessibilityElementHandle element,
                                      AccessibilityQuery query) {
    std::vector<AccessibilityElementHandle> elements{std::move(element)};
    auto reading = tree.read(std::move(elements), std::move(query));
    auto answers = co_await std::move(reading);
    co_return std::move(answers.front());
}

} // namespace vesk
