#include "VeskPlatform/Linux/X11/X11RunningApplications.hpp"

#include "VeskPlatform/Linux/Desktop/ProcessName.hpp"

#include <algorithm>
#include <utility>

namespace vesk {

namespace {

bool isSame(const RunningApplication& one, const RunningApplication& other) {
    return one.processIdentifier == other.processIdentifier && one.bundleIdentifier == other.bundleIdentifier;
}

/// Whether `other`, which lies above, was used after `one`. The server's clock runs over after 49 days.
bool wasUsedAfter(const X11Window& other, const X11Window& one, bool haveTimes) {
    if (one.isMinimized != other.isMinimized) return one.isMinimized;
    return !haveTimes || static_cast<std::int32_t>(*other.userTime - *one.userTime) >= 0;
}

/// The window that was used last, as far as it can be known: by the times that programs note where all do, else the
/// topmost. A minimized window comes after all others. `stacked` has the topmost last and is not empty.
const X11Window& lastUsed(const std::vector<X11Window>& stacked) {
    const bool haveTimes =
        std::ranges::all_of(stacked, [](const X11Window& window) { return window.userTime.has_value(); });
    const X11Window* last = &stacked.front();
    for (const X11Window& window : stacked)
        if (wasUsedAfter(window, *last, haveTimes)) last = &window;
    return *last;
}

} // namespace

X11RunningApplications::X11RunningApplications(X11Connection& connection, Environment& environment)
    : windows_(connection), files_(environment), opener_(environment, files_) {}

RunningApplication X11RunningApplications::describe(const X11Window& window) {
    RunningApplication application{.processIdentifier = window.processIdentifier,
                                   .hasUserInterface = window.isForUsers};
    std::string name;
    if (const auto file = files_.ofWindow({window.applicationId, window.className, window.instanceName})) {
        application.bundleIdentifier = file->identifier;
        application.bundlePath = file->path;
        name = file->name;
    }
    for (const std::string& other : {window.className, window.instanceName})
        if (name.empty()) name = other;
    if (name.empty()) name = processName(window.processIdentifier);
    if (!name.empty()) application.localizedName = name;
    return application;
}

std::vector<X11RunningApplications::Application>
X11RunningApplications::applicationsOf(const std::vector<xcb_window_t>& windows) {
    std::vector<Application> applications;
    for (X11Window& window : windows_.describe(windows)) {
        const RunningApplication own = describe(window);
        auto found = std::ranges::find_if(applications, [&](const Application& known) {
            if (known.description.processIdentifier != own.processIdentifier) return false;
            if (own.processIdentifier < 0) return known.description.localizedName == own.localizedName;
            return !own.bundleIdentifier || known.description.bundleIdentifier == own.bundleIdentifier;
        });
        if (found == applications.end()) found = applications.insert(found, {own, {}});
        found->description.hasUserInterface = found->description.hasUserInterface || own.hasUserInterface;
        found->windows.push_back(std::move(window));
    }
    return applications;
}

std::vector<RunningApplication> X11RunningApplications::list() {
    std::vector<RunningApplication> descriptions;
    for (Application& application : applicationsOf(windows_.inOrderOfAge()))
        descriptions.push_back(std::move(application.description));
    return descriptions;
}

std::optional<RunningApplication> X11RunningApplications::frontmost() {
    const auto active = windows_.active();
    if (!active) return std::nullopt;
    const auto windows = windows_.describe({*active});
    if (windows.empty()) return std::nullopt;
    RunningApplication own = describe(windows.front());
    return own.bundleIdentifier ? own : ownerOf(*active).value_or(std::move(own));
}

/// The application that a window without a desktop file, such as a dialog, goes with.
std::optional<RunningApplication> X11RunningApplications::ownerOf(xcb_window_t window) {
    for (Application& application : applicationsOf(windows_.inOrderOfAge()))
        if (std::ranges::find(application.windows, window, &X11Window::window) != application.windows.end())
            return std::move(application.description);
    return std::nullopt;
}

bool X11RunningApplications::activate(const RunningApplication& application) {
    // In the order of age first: which application a window without a desktop file goes with depends on it.
    const auto all = applicationsOf(windows_.inOrderOfAge());
    const auto found =
        std::ranges::find_if(all, [&](const Application& known) { return isSame(known.description, application); });
    if (found == all.end()) return false;
    std::vector<X11Window> stacked = found->windows;
    const auto order = windows_.fromBottomToTop();
    std::ranges::stable_sort(stacked, {}, [&order](const X11Window& window) {
        return std::ranges::find(order, window.window) - order.begin();
    });
    const bool hasOrdinary = std::ranges::any_of(stacked, &X11Window::isForUsers);
    if (hasOrdinary) std::erase_if(stacked, [](const X11Window& window) { return !window.isForUsers; });
    const X11Window& first = lastUsed(stacked);
    for (const X11Window& window : stacked)
        if (!window.isMinimized && window.window != first.window) windows_.raise(window.window);
    windows_.activate(first.window);
    return true;
}

Task<int> X11RunningApplications::runOpener(std::vector<std::string> arguments) { co_return opener_.run(arguments); }

} // namespace vesk
