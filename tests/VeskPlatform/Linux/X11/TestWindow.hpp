#pragma once

#include "VeskPlatform/Linux/X11/X11Properties.hpp"
#include "tests/support/VirtualDesktop.hpp"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace vesk::test {

/// Windows of a program that tells of itself what a test wants, and notes the events that it gets.
class TestProgram {
public:
    struct Look {
        std::string instanceName = "probe", className = "Probe", applicationId{}, type{};
        std::optional<std::uint32_t> process = static_cast<std::uint32_t>(::getpid());
        std::optional<std::uint32_t> userTime{};
        bool isManaged = true;
        int x = 10, y = 10;
        std::uint16_t width = 100, height = 80;
    };
    struct Press {
        std::uint8_t button = 0;
        int rootX = 0, rootY = 0;
        bool operator==(const Press&) const = default;
    };

    explicit TestProgram(const std::string& display) : connection(display), atoms(connection) {
        connection.listen([this](const xcb_generic_event_t& event) { note(event); });
    }

    xcb_window_t show(const Look& look) {
        const xcb_window_t window = xcb_generate_id(connection.get());
        const std::uint32_t values[]{look.isManaged ? 0U : 1U,
                                     XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_BUTTON_RELEASE
                                         | XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_POINTER_MOTION
                                         | XCB_EVENT_MASK_STRUCTURE_NOTIFY};
        xcb_create_window(connection.get(), XCB_COPY_FROM_PARENT, window, connection.root(),
                          static_cast<std::int16_t>(look.x), static_cast<std::int16_t>(look.y), look.width, look.height,
                          0, XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                          XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values);
        std::string names = look.instanceName + '\0' + look.className + '\0';
        text(window, XCB_ATOM_WM_CLASS, XCB_ATOM_STRING, names);
        text(window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, look.className);
        if (!look.applicationId.empty())
            text(window, atoms["_GTK_APPLICATION_ID"], atoms["UTF8_STRING"], look.applicationId);
        if (!look.type.empty()) number(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, atoms[look.type]);
        if (look.process) number(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, *look.process);
        if (look.userTime) number(window, "_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, *look.userTime);
        xcb_map_window(connection.get(), window);
        eventually("a window of " + look.className, [&] {
            connection.synchronize();
            connection.dispatchEvents();
            return std::ranges::find(mapped, window) != mapped.end();
        });
        return window;
    }
    void close(xcb_window_t window) {
        xcb_destroy_window(connection.get(), window);
        connection.synchronize();
    }
    void number(xcb_window_t window, const std::string& name, xcb_atom_t type, std::uint32_t value) {
        numbers(window, name, type, {value});
    }
    void numbers(xcb_window_t window, const std::string& name, xcb_atom_t type,
                 const std::vector<std::uint32_t>& values) {
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, atoms[name], type, 32,
                            static_cast<std::uint32_t>(values.size()), values.data());
        connection.synchronize();
    }
    /// Poses as a window manager, which tells what a test wants and does nothing.
    void manage() {
        const xcb_window_t window = show({.isManaged = false, .x = -50, .width = 1, .height = 1});
        const std::uint32_t events = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT;
        xcb_change_window_attributes(connection.get(), connection.root(), XCB_CW_EVENT_MASK, &events);
        for (const xcb_window_t place : {window, connection.root()})
            number(place, "_NET_SUPPORTING_WM_CHECK", XCB_ATOM_WINDOW, window);
    }
    std::vector<std::uint32_t> rootNumbers(const std::string& name) {
        return X11Property(connection, connection.root(), atoms[name]).numbers();
    }

    X11Connection connection;
    X11Atoms atoms;
    std::vector<xcb_window_t> mapped;
    std::vector<Press> presses;
    std::vector<std::pair<int, int>> motions;
    /// Keys and the modifiers that were down.
    std::vector<std::pair<int, int>> keys;
    /// What was sent to the window manager.
    std::vector<xcb_client_message_event_t> messages;

private:
    void text(xcb_window_t window, xcb_atom_t name, xcb_atom_t type, const std::string& value) {
        xcb_change_property(connection.get(), XCB_PROP_MODE_REPLACE, window, name, type, 8,
                            static_cast<std::uint32_t>(value.size()), value.data());
    }
    void note(const xcb_generic_event_t& event) {
        switch (event.response_type & 0x7F) {
        case XCB_MAP_NOTIFY: mapped.push_back(reinterpret_cast<const xcb_map_notify_event_t&>(event).window); break;
        case XCB_BUTTON_PRESS: {
            const auto& press = reinterpret_cast<const xcb_button_press_event_t&>(event);
            presses.push_back({press.detail, press.root_x, press.root_y});
            break;
        }
        case XCB_MOTION_NOTIFY: {
            const auto& motion = reinterpret_cast<const xcb_motion_notify_event_t&>(event);
            motions.emplace_back(motion.root_x, motion.root_y);
            break;
        }
        case XCB_KEY_PRESS: {
            const auto& press = reinterpret_cast<const xcb_key_press_event_t&>(event);
            keys.emplace_back(press.detail, press.state);
            break;
        }
        case XCB_CLIENT_MESSAGE: messages.push_back(reinterpret_cast<const xcb_client_message_event_t&>(event)); break;
        default: break;
        }
    }
};

} // namespace vesk::test
