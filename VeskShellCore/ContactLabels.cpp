#include "VeskShellCore/ContactLabels.hpp"

#include "VeskPlatform/ContactStore.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <string_view>

namespace vesk::VeskContactsOperations {
namespace {

struct LabelName {
    std::string_view name;
    std::string_view label;
};

constexpr LabelName writtenNames[] = {
    {"iphone", contactLabel::iPhone},    {"mobile", contactLabel::mobile}, {"cell", contactLabel::mobile},
    {"cellphone", contactLabel::mobile}, {"main", contactLabel::main},     {"home", contactLabel::home},
    {"work", contactLabel::work},        {"office", contactLabel::work},   {"other", contactLabel::other},
};

constexpr LabelName readNames[] = {
    {"iPhone", contactLabel::iPhone}, {"mobile", contactLabel::mobile}, {"main", contactLabel::main},
    {"home", contactLabel::home},     {"work", contactLabel::work},     {"other", contactLabel::other},
};

} // namespace

std::string nativeLabel(const std::string& label, const std::string& defaultLabel, const TextFolding& folding) {
    const auto known = std::ranges::find(writtenNames, folding.folded(label), &LabelName::name);
    if (known != std::end(writtenNames)) return std::string(known->label);
    const std::string_view custom = trimmed(label);
    return custom.empty() ? defaultLabel : std::string(custom);
}

std::string readableLabel(const std::optional<std::string>& label) {
    const std::string_view stored = label ? trimmed(*label) : std::string_view{};
    if (stored.empty()) return "other";
    const auto known = std::ranges::find(readNames, stored, &LabelName::label);
    return std::string(known == std::end(readNames) ? stored : known->name);
}

} // namespace vesk::VeskContactsOperations
