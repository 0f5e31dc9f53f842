#include "VeskPlatform/Linux/X11/X11Displays.hpp"

#include "VeskPlatform/Linux/X11/X11Capture.hpp"

#include <algorithm>
#include <xcb/randr.h>

namespace vesk {

bool X11Displays::hasMonitors() {
    const auto* const extension = xcb_get_extension_data(connection_.get(), &xcb_randr_id);
    if (extension == nullptr || extension->present == 0) return false;
    const auto version =
        connection_.answer<xcb_randr_query_version_reply_t>(xcb_randr_query_version(connection_.get(), 1, 5));
    return version && (version->major_version > 1 || version->minor_version >= 5);
}

std::optional<X11Displays::Monitor> X11Displays::wholeScreen() {
    const auto root =
        connection_.answer<xcb_get_geometry_reply_t>(xcb_get_geometry(connection_.get(), connection_.root()));
    if (!root) return std::nullopt;
    return Monitor{connection_.root(), 0, 0, root->width, root->height};
}

std::optional<std::vector<X11Displays::Monitor>> X11Displays::monitors() {
    if (!hasMonitors()) {
        const auto whole = wholeScreen();
        return whole ? std::optional(std::vector{*whole}) : std::nullopt;
    }
    const auto answer = connection_.answer<xcb_randr_get_monitors_reply_t>(
        xcb_randr_get_monitors(connection_.get(), connection_.root(), 1));
    if (!answer) return std::nullopt;
    std::vector<Monitor> all;
    for (auto each = xcb_randr_get_monitors_monitors_iterator(answer.get()); each.rem > 0;
         xcb_randr_monitor_info_next(&each))
        all.push_back({each.data->name, each.data->x, each.data->y, each.data->width, each.data->height});
    return all;
}

std::optional<X11Displays::Monitor> X11Displays::monitor(DisplayIdentifier display) {
    const auto all = monitors();
    if (!all) return std::nullopt;
    const auto found = std::ranges::find(*all, display, &Monitor::identifier);
    return found == all->end() ? std::nullopt : std::optional(*found);
}

std::optional<std::size_t> X11Displays::count() {
    const auto all = monitors();
    return all ? std::optional(all->size()) : std::nullopt;
}

std::optional<std::vector<DisplayIdentifier>> X11Displays::list(std::size_t capacity) {
    const auto all = monitors();
    if (!all) return std::nullopt;
    std::vector<DisplayIdentifier> identifiers;
    for (const Monitor& each : *all)
        if (identifiers.size() < capacity) identifiers.push_back(each.identifier);
    return identifiers;
}

ScreenRectangle X11Displays::bounds(DisplayIdentifier display) {
    const auto found = monitor(display);
    if (!found) return {};
    return {double(found->x), double(found->y), double(found->width), double(found->height)};
}

std::unique_ptr<ScreenImage> X11Displays::capture(DisplayIdentifier display) {
    const auto found = monitor(display);
    if (!found) return nullptr;
    return captureScreen(connection_, {found->x, found->y, found->width, found->height});
}

} // namespace vesk
