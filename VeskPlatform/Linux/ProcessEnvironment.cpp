#include "VeskPlatform/Linux/ProcessEnvironment.hpp"

#include "VeskPlatform/Linux/PosixFileReader.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cstdlib>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace vesk {

namespace {

std::string homeFromUserDatabase() {
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found) != 0 || found == nullptr) return {};
    return entry.pw_dir != nullptr && entry.pw_dir[0] == '/' ? entry.pw_dir : "";
}

} // namespace

std::optional<std::string> ProcessEnvironment::value(const std::string& name) {
    const char* value = std::getenv(name.c_str());
    return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

std::string ProcessEnvironment::homeDirectory() {
    std::string home = value("HOME").value_or("");
    if (home.empty() || home.front() != '/') home = homeFromUserDatabase();
    while (home.size() > 1 && home.back() == '/') home.pop_back();
    return home;
}

std::optional<std::string> ProcessEnvironment::argumentZero() {
    constexpr std::uint64_t longestCommandLine = 8 << 20;
    try {
        const std::string arguments = PosixFileReader().contents("/proc/self/cmdline", longestCommandLine);
        const auto end = arguments.find('\0');
        return end == std::string::npos ? std::nullopt : std::optional(arguments.substr(0, end));
    } catch (const PosixError&) {
        return std::nullopt; // no /proc: nothing tells
    }
}

} // namespace vesk
