#pragma once

#include "VeskPlatform/Platform.hpp"

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

/// The one diagnostic log. Always on, without levels: words in the style `<area> <event> key=value`, each line redacted
/// on the caller's thread and written on a serial queue. Nothing that goes wrong here reaches a caller.
namespace vesk::ShellDebugLogger {

/// What logging needs. All of it is safe from any thread (the files are used on the queue only) and outlives the queue.
struct Ports {
    Clock& clock;
    Environment& environment;
    PrivateFiles& privateFiles;
    SerialQueue& queue;
};

/// Called on the main executor, as every accessor of the platform.
Ports portsOf(Platform& platform);

/// Appends one line: the time (UTC, milliseconds), then the message, redacted. `message` is called once, at once.
/// Returns without waiting for the disk; any thread.
void log(const Ports& ports, const std::function<std::string()>& message);
/// The same from the main executor.
void log(Platform& platform, const std::function<std::string()>& message);

/// "logs/shell-debug.log" in the application support directory; none where there is none.
std::optional<std::string> logFileURL(Environment& environment);

/// Tells how many bytes there are and nothing of what they are. `limit` has no effect.
std::string preview(std::string_view data, std::size_t limit);

/// `text` without values of private keys, e-mail addresses, bearer tokens and paths of home folders.
std::string sanitize(std::string_view text);

} // namespace vesk::ShellDebugLogger
