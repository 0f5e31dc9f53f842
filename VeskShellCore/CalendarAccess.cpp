#include "VeskShellCore/CalendarAccess.hpp"

#include "VeskPlatform/Consent.hpp"
#include "VeskShellCore/CalendarError.hpp"
#include "VeskShellCore/ShellDebugLogger.hpp"

#include <array>

namespace vesk::VeskCalendarOperations {
namespace {

constexpr AuthorizationStatus notDetermined = 0, restricted = 1, denied = 2, fullAccess = 3, writeOnly = 4;

std::string statusLabel(AuthorizationStatus status) {
    static constexpr std::array labels{"not_determined", "restricted", "denied", "full_access", "write_only"};
    const auto index = static_cast<std::size_t>(status);
    return index < labels.size() ? labels[index] : "unknown";
}

AuthorizationStatus eventsStatus(Platform& platform) {
    return platform.consent().authorizationStatus(PrivacyService::events);
}

[[noreturn]] void refuse(std::string description) {
    throw CalendarError(CalendarError::Code::accessRefused, std::move(description));
}

void requireFullAccess(AuthorizationStatus status) {
    switch (status) {
    case fullAccess: return;
    case restricted: refuse("Calendar access is restricted by macOS or device policy.");
    case denied:
        refuse("Calendar access was denied for Vesk. Enable Calendar access in System Settings and try again.");
    case writeOnly:
        refuse("Vesk only has write-only Calendar access. Enable full Calendar access in System Settings and try "
               "again.");
    default:
        throw CalendarError(CalendarError::Code::accessUnknown, "Calendar authorization returned an unknown state.");
    }
}

} // namespace

Task<bool> requestEventAccess(Platform& platform) {
    ShellDebugLogger::log(platform, [&] {
        return "calendar-operation requestFullAccess begin status=" + statusLabel(eventsStatus(platform));
    });
    const AccessAnswer answer = co_await platform.consent().requestAccess(PrivacyService::events);
    ShellDebugLogger::log(platform, [&] {
        return std::string("calendar-operation requestFullAccess completed granted=")
               + (answer.granted ? "true" : "false") + " status=" + statusLabel(eventsStatus(platform))
               + " error=" + answer.error.value_or("none");
    });
    co_return answer.granted;
}

Task<void> ensureCalendarAccess(Platform& platform) {
    const AuthorizationStatus status = eventsStatus(platform);
    if (status != notDetermined) {
        requireFullAccess(status);
        co_return;
    }
    // Named on purpose: g++ 12 lays out the frame wrongly for a co_await inside a condition.
    const bool granted = co_await requestEventAccess(platform);
    if (!granted)
        refuse("Calendar access was not granted for Vesk. Enable Calendar access in System Settings and try again.");
}

} // namespace vesk::VeskCalendarOperations
