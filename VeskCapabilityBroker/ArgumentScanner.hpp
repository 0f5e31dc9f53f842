#pragma once

#include "VeskCapabilityBroker/CommandLineParser.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vesk {

/// A flag of a scanning command and the member of its draft that it fills. What kind of member decides what it does:
/// - an optional text takes the next argument, whatever it looks like; with none left it becomes absent;
/// - a boolean becomes true and takes nothing;
/// - a list gets the next argument appended, unless that is blank;
/// - a check looks at the next argument at once, also where there is none, and stores it or throws UsageError.
template <class Draft> struct ScannedFlag {
    using Check = void (*)(Draft& draft, const std::string* value);

    std::string_view word;
    std::variant<std::optional<std::string> Draft::*, bool Draft::*, std::vector<std::string> Draft::*, Check> target;
};

namespace scanning {

template <class Draft> void store(Draft& draft, std::optional<std::string> Draft::*member, const std::string* value) {
    if (value == nullptr)
        draft.*member = std::nullopt;
    else
        draft.*member = *value;
}

template <class Draft> void store(Draft& draft, std::vector<std::string> Draft::*member, const std::string* value) {
    if (value != nullptr && !isBlank(*value)) (draft.*member).push_back(*value);
}

template <class Draft> void store(Draft& draft, bool Draft::*member, const std::string*) { draft.*member = true; }

template <class Draft> void store(Draft& draft, typename ScannedFlag<Draft>::Check check, const std::string* value) {
    check(draft, value);
}

} // namespace scanning

/// Walks `arguments` from left to right; the first that is no flag of `flags` throws, `unknownPrefix` before it.
template <class Draft>
Draft scanArguments(Arguments arguments, std::span<const ScannedFlag<Draft>> flags, std::string_view unknownPrefix) {
    Draft draft;
    for (std::size_t cursor = 0; cursor < arguments.size();) {
        const std::string& argument = arguments[cursor];
        const auto flag =
            std::find_if(flags.begin(), flags.end(), [&](const auto& candidate) { return candidate.word == argument; });
        if (flag == flags.end()) throw UsageError(std::string(unknownPrefix) + argument);
        const std::string* value = cursor + 1 < arguments.size() ? &arguments[cursor + 1] : nullptr;
        std::visit([&](auto target) { scanning::store(draft, target, value); }, flag->target);
        cursor += std::holds_alternative<bool Draft::*>(flag->target) ? 1 : 2;
    }
    return draft;
}

} // namespace vesk
