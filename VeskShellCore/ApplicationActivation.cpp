#include "VeskShellCore/ApplicationActivation.hpp"

#include "VeskPlatform/Desktop.hpp"
#include "VeskPlatform/MonotonicClock.hpp"
#include "VeskPlatform/Sleeper.hpp"
#include "VeskShellCore/NativeControlError.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <exception>
#include <iterator>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

namespace vesk {
namespace {

constexpr std::chrono::milliseconds pollingInterval{100};

/// What is compared of an application, in lower case.
struct Candidate {
    RunningApplication application;
    std::optional<std::string> identifier;
    std::optional<std::string> name;
};

std::optional<std::string> loweredOrAbsent(const std::optional<std::string>& text) {
    return text ? std::optional(lowercased(*text)) : std::nullopt;
}

std::vector<Candidate> candidates(RunningApplications& applications) {
    std::vector<Candidate> result;
    for (RunningApplication& application : applications.list()) {
        if (application.isTerminated || !application.hasUserInterface) continue;
        auto identifier = loweredOrAbsent(application.bundleIdentifier);
        auto name = loweredOrAbsent(application.localizedName);
        result.push_back({std::move(application), std::move(identifier), std::move(name)});
    }
    return result;
}

using Attribute = std::optional<std::string> Candidate::*;
using Comparison = bool (*)(std::string_view attribute, std::string_view request);

bool isEqual(std::string_view attribute, std::string_view request) { return attribute == request; }
bool holds(std::string_view attribute, std::string_view request) {
    return attribute.find(request) != std::string_view::npos;
}

/// Any exact match outranks every partial one, and an identifier a name that matches as well.
constexpr std::pair<Attribute, Comparison> passes[] = {{&Candidate::identifier, isEqual},
                                                       {&Candidate::name, isEqual},
                                                       {&Candidate::identifier, holds},
                                                       {&Candidate::name, holds}};

bool isInFront(RunningApplications& applications, const RunningApplication& application) {
    const auto front = applications.frontmost();
    if (!front) return false;
    if (front->processIdentifier == application.processIdentifier) return true;
    const std::string identifier = application.bundleIdentifier.value_or("");
    return !identifier.empty() && front->bundleIdentifier == identifier;
}

/// The flag and the value that tell the opener what to open; none where nothing is known.
std::vector<std::string> openerArguments(const RunningApplication& application) {
    const std::pair<const char*, const std::optional<std::string>&> choices[] = {
        {"-b", application.bundleIdentifier}, {"-a", application.bundlePath}, {"-a", application.localizedName}};
    for (const auto& [flag, value] : choices)
        if (value && !value->empty()) return {flag, *value};
    return {};
}

} // namespace

RunningApplication findRunningApp(RunningApplications& applications, const std::string& namedOrBundled) {
    const std::string request = lowercased(namedOrBundled);
    std::vector<Candidate> all = candidates(applications);
    for (const auto& [attribute, matches] : passes)
        for (Candidate& candidate : all)
            if (const auto& value = candidate.*attribute; value && matches(*value, request))
                return std::move(candidate.application);
    throw NativeControlError(90, "No running macOS application matched `" + namedOrBundled
                                     + "`. Use the visible app name or bundle id.");
}

Task<bool> waitForFrontmostApp(Platform& platform, RunningApplication application, std::chrono::milliseconds timeout) {
    MonotonicClock& clock = platform.monotonicClock();
    Sleeper& sleeper = platform.sleeper();
    RunningApplications& applications = platform.desktop().runningApplications();
    const auto deadline = clock.now() + timeout;
    while (clock.now() < deadline) {
        if (isInFront(applications, application)) co_return true;
        try {
            co_await sleeper.sleep(pollingInterval);
        } catch (const std::exception&) { // the clock alone decides how long to go on
        }
    }
    co_return false;
}

Task<bool> launchApplicationViaOpen(RunningApplications& applications, RunningApplication application) {
    std::vector<std::string> arguments = openerArguments(application);
    if (arguments.empty()) co_return false;
    auto opening = applications.runOpener(std::move(arguments));
    const int status = co_await std::move(opening);
    co_return status == 0;
}

} // namespace vesk
