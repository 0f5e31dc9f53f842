#include "VeskPlatform/Portable/LaunchWords.hpp"

#include <algorithm>
#include <cerrno>
#include <string>
#include <string_view>
#include <utility>

namespace vesk {
namespace {

bool hasNul(std::string_view text) { return text.find('\0') != std::string_view::npos; }

bool isVariable(const std::pair<const std::string, std::string>& variable) {
    const auto& [name, value] = variable;
    return !name.empty() && name.find('=') == std::string::npos && !hasNul(name) && !hasNul(value);
}

} // namespace

void checkWords(const ProgramLaunch& launch) {
    if (hasNul(launch.executable) || std::ranges::any_of(launch.arguments, hasNul)
        || !std::ranges::all_of(launch.variables, isVariable) || hasNul(launch.workingDirectory.value_or("")))
        throw PosixError(EINVAL, launch.executable);
}

} // namespace vesk
