#include "VeskShellCore/ShellDebugLogger.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/PrivateFiles.hpp"
#include "VeskPlatform/SerialQueue.hpp"
#include "VeskShellCore/ApplicationSupport.hpp"
#include "VeskSupport/Iso8601.hpp"

namespace vesk::ShellDebugLogger {
namespace {

std::optional<std::string> logDirectory(Environment& environment) {
    return applicationSupportItem(environment, "logs");
}

std::string fileIn(const std::string& directory) { return directory + "/shell-debug.log"; }

/// Permissions are set again with each line, so that what was widened by other means is tightened.
void write(Environment& environment, PrivateFiles& files, std::string_view line) {
    const auto directory = logDirectory(environment);
    if (!directory) return;
    const std::string file = fileIn(*directory);
    files.createDirectories(*directory, 0777);
    files.setPermissions(*directory, 0700);
    if (files.exists(file))
        files.append(file, line);
    else
        files.writeAtomically(file, line);
    files.setPermissions(file, 0600);
}

} // namespace

Ports portsOf(Platform& platform) {
    return {.clock = platform.clock(),
            .environment = platform.environment(),
            .privateFiles = platform.privateFiles(),
            .queue = platform.logQueue()};
}

void log(const Ports& ports, const std::function<std::string()>& message) {
    // A line that cannot be made is dropped: it must neither fail the caller nor go out unredacted.
    try {
        std::string line = "[" + formatUtcMilliseconds(ports.clock.now()) + "] ";
        line += sanitize(message()) + "\n";
        ports.queue.async([&environment = ports.environment, &files = ports.privateFiles, line = std::move(line)] {
            try {
                write(environment, files, line);
            } catch (...) { // the next line tries again
            }
        });
    } catch (...) {
    }
}

void log(Platform& platform, const std::function<std::string()>& message) {
    try {
        log(portsOf(platform), message);
    } catch (...) {
    }
}

std::optional<std::string> logFileURL(Environment& environment) {
    const auto directory = logDirectory(environment);
    return directory ? std::optional(fileIn(*directory)) : std::nullopt;
}

std::string preview(std::string_view data, std::size_t) {
    return data.empty() ? "(empty)" : "[REDACTED bytes=" + std::to_string(data.size()) + "]";
}

} // namespace vesk::ShellDebugLogger
