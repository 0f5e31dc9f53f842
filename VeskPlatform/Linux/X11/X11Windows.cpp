#include "VeskPlatform/Linux/X11/X11Windows.hpp"

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>
#include <xcb/res.h>

namespace vesk {

namespace {

/// The source of a request, for window managers that turn away programs which want attention by themselves: the user,
/// through a pager.
constexpr std::uint32_t sourceUser = 2;

constexpr std::array<const char*, 6> typesWithoutUsers{
    "_NET_WM_WINDOW_TYPE_DESKTOP", "_NET_WM_WINDOW_TYPE_DOCK",         "_NET_WM_WINDOW_TYPE_SPLASH",
    "_NET_WM_WINDOW_TYPE_TOOLTIP", "_NET_WM_WINDOW_TYPE_NOTIFICATION", "_NET_WM_WINDOW_TYPE_DND"};

/// WM_CLASS holds two texts, each ended by a null byte: the instance's and the class's (ICCCM 4.1.2.5).
std::pair<std::string, std::string> classHint(const std::string& bytes) {
    const auto end = bytes.find('\0');
    if (end == std::string::npos) return {bytes, {}};
    return {bytes.substr(0, end), std::string(bytes.c_str() + end + 1)};
}

/// The questions about one window, all on their way at once.
struct WindowQuestions {
    WindowQuestions(X11Connection& connection, X11Atoms& atoms, xcb_window_t window)
        : attributes(xcb_get_window_attributes(connection.get(), window)),
          process(connection, window, atoms["_NET_WM_PID"]), names(connection, window, XCB_ATOM_WM_CLASS),
          application(connection, window, atoms["_GTK_APPLICATION_ID"]),
          types(connection, window, atoms["_NET_WM_WINDOW_TYPE"]), states(connection, window, atoms["_NET_WM_STATE"]),
          time(connection, window, atoms["_NET_WM_USER_TIME"]),
          timeWindow(connection, window, atoms["_NET_WM_USER_TIME_WINDOW"]) {}

    xcb_get_window_attributes_cookie_t attributes;
    X11Property process, names, application, types, states, time, timeWindow;
};

std::optional<std::uint32_t> firstOf(const std::vector<std::uint32_t>& numbers) {
    return numbers.empty() ? std::nullopt : std::optional(numbers.front());
}

} // namespace

X11Windows::X11Windows(X11Connection& connection) : connection_(connection), atoms_(connection) {
    std::vector<std::string> names{"_NET_SUPPORTING_WM_CHECK", "_NET_CLIENT_LIST",     "_NET_CLIENT_LIST_STACKING",
                                   "_NET_ACTIVE_WINDOW",       "_NET_WM_PID",          "_GTK_APPLICATION_ID",
                                   "_NET_WM_WINDOW_TYPE",      "_NET_WM_STATE",        "_NET_WM_STATE_HIDDEN",
                                   "_NET_WM_USER_TIME",        "_NET_RESTACK_WINDOW",  "_NET_WM_USER_TIME_WINDOW",
                                   "_NET_SUPPORTED",           "_VESK_CURRENT_MOMENT", "WM_STATE"};
    names.insert(names.end(), typesWithoutUsers.begin(), typesWithoutUsers.end());
    atoms_.prepare(names);
    connection_.listen([this](const xcb_generic_event_t& event) {
        if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return;
        const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (change.window == clockWindow_) clock_ = change.time;
    });
}

std::vector<std::uint32_t> X11Windows::rootNumbers(const std::string& name) {
    return X11Property(connection_, connection_.root(), atoms_[name]).numbers();
}

/// The property outlives a window manager that was killed; the window that it names does not.
bool X11Windows::areManaged() {
    const auto check = firstOf(rootNumbers("_NET_SUPPORTING_WM_CHECK"));
    if (!check) return false;
    return firstOf(X11Property(connection_, *check, atoms_["_NET_SUPPORTING_WM_CHECK"]).numbers()) == check;
}

std::vector<xcb_window_t> X11Windows::inOrderOfAge() {
    return areManaged() ? rootNumbers("_NET_CLIENT_LIST") : visibleTopLevels();
}

std::vector<xcb_window_t> X11Windows::fromBottomToTop() {
    if (!areManaged()) return visibleTopLevels();
    auto stacked = rootNumbers("_NET_CLIENT_LIST_STACKING");
    return stacked.empty() ? rootNumbers("_NET_CLIENT_LIST") : stacked;
}

std::vector<xcb_window_t> X11Windows::visibleTopLevels() {
    const auto tree = connection_.answer<xcb_query_tree_reply_t>(xcb_query_tree(connection_.get(), connection_.root()));
    std::vector<xcb_window_t> visible;
    if (!tree) return visible;
    const xcb_window_t* const children = xcb_query_tree_children(tree.get());
    std::vector<std::pair<xcb_window_t, xcb_get_window_attributes_cookie_t>> asked;
    for (int i = 0; i < xcb_query_tree_children_length(tree.get()); ++i)
        asked.emplace_back(children[i], xcb_get_window_attributes(connection_.get(), children[i]));
    for (const auto& [window, cookie] : asked) {
        const auto attributes = connection_.answer<xcb_get_window_attributes_reply_t>(cookie);
        if (attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE && attributes->override_redirect == 0)
            visible.push_back(window);
    }
    return visible;
}

std::optional<xcb_window_t> X11Windows::active() {
    if (!areManaged()) return topLevelWithFocus();
    const auto named = firstOf(rootNumbers("_NET_ACTIVE_WINDOW"));
    return named == XCB_WINDOW_NONE ? std::nullopt : named;
}

std::optional<xcb_window_t> X11Windows::topLevelWithFocus() {
    const auto focus = connection_.answer<xcb_get_input_focus_reply_t>(xcb_get_input_focus(connection_.get()));
    if (!focus || focus->focus <= XCB_INPUT_FOCUS_POINTER_ROOT || focus->focus == connection_.root())
        return std::nullopt;
    const xcb_window_t window = topLevelOf(focus->focus);
    return window == XCB_WINDOW_NONE ? std::nullopt : std::optional(window);
}

xcb_window_t X11Windows::topLevelOf(xcb_window_t window) {
    while (true) {
        const auto tree = connection_.answer<xcb_query_tree_reply_t>(xcb_query_tree(connection_.get(), window));
        if (!tree) return XCB_WINDOW_NONE;
        if (tree->parent == connection_.root() || tree->parent == XCB_WINDOW_NONE) return window;
        window = tree->parent;
    }
}

/// Programs of the plain toolkit tell no process; the server knows those of this machine (X-Resource 1.2).
std::int32_t X11Windows::processOf(xcb_window_t window) {
    const auto* const extension = xcb_get_extension_data(connection_.get(), &xcb_res_id);
    if (extension == nullptr || extension->present == 0) return -1;
    const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto answer =
        connection_.answer<xcb_res_query_client_ids_reply_t>(xcb_res_query_client_ids(connection_.get(), 1, &wanted));
    if (!answer) return -1;
    for (auto ids = xcb_res_query_client_ids_ids_iterator(answer.get()); ids.rem > 0;
         xcb_res_client_id_value_next(&ids)) {
        const bool isProcess = (ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) != 0;
        if (isProcess && xcb_res_client_id_value_value_length(ids.data) > 0)
            return static_cast<std::int32_t>(*xcb_res_client_id_value_value(ids.data));
    }
    return -1;
}

std::vector<X11Window> X11Windows::describe(const std::vector<xcb_window_t>& windows) {
    std::vector<WindowQuestions> asked;
    asked.reserve(windows.size());
    for (const xcb_window_t window : windows) asked.emplace_back(connection_, atoms_, window);
    std::vector<X11Window> described;
    for (std::size_t i = 0; i < windows.size(); ++i) {
        WindowQuestions& questions = asked[i];
        const bool isThere = connection_.answer<xcb_get_window_attributes_reply_t>(questions.attributes) != nullptr;
        const auto process = firstOf(questions.process.numbers());
        const auto types = questions.types.numbers(), states = questions.states.numbers();
        auto [instance, name] = classHint(questions.names.text());
        X11Window window{.window = windows[i],
                         .instanceName = std::move(instance),
                         .className = std::move(name),
                         .applicationId = questions.application.text(),
                         .userTime = firstOf(questions.time.numbers())};
        const auto timeWindow = firstOf(questions.timeWindow.numbers());
        if (!isThere) continue;
        // The first type that a window names is the one it means; a later one is for window managers that know less.
        window.isForUsers = types.empty() || std::ranges::none_of(typesWithoutUsers, [&](const char* type) {
                                return atoms_[type] == types.front();
                            });
        window.isMinimized = std::ranges::find(states, atoms_["_NET_WM_STATE_HIDDEN"]) != states.end();
        window.processIdentifier = process ? static_cast<std::int32_t>(*process) : processOf(windows[i]);
        if (timeWindow)
            window.userTime = firstOf(X11Property(connection_, *timeWindow, atoms_["_NET_WM_USER_TIME"]).numbers());
        described.push_back(std::move(window));
    }
    return described;
}

/// The server's clock now: the time of a change that we make ourselves (ICCCM 2.1).
std::uint32_t X11Windows::serverTime() {
    if (clockWindow_ == XCB_WINDOW_NONE) {
        clockWindow_ = xcb_generate_id(connection_.get());
        const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
        xcb_create_window(connection_.get(), 0, clockWindow_, connection_.root(), -1, -1, 1, 1, 0,
                          XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
    }
    clock_.reset();
    xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, clockWindow_, atoms_["_VESK_CURRENT_MOMENT"],
                        XCB_ATOM_CARDINAL, 32, 0, nullptr);
    connection_.dispatchUntil([this] { return clock_.has_value(); });
    return clock_.value_or(XCB_CURRENT_TIME);
}

void X11Windows::tellWindowManager(const std::string& message, xcb_window_t window,
                                   const std::vector<std::uint32_t>& data) {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atoms_[message];
    std::ranges::copy(data, event.data.data32);
    xcb_send_event(connection_.get(), 0, connection_.root(),
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char*>(&event));
}

bool X11Windows::canRestack() {
    const auto supported = rootNumbers("_NET_SUPPORTED");
    return std::ranges::find(supported, atoms_["_NET_RESTACK_WINDOW"]) != supported.end();
}

void X11Windows::raise(xcb_window_t window) {
    if (areManaged()) {
        if (canRestack())
            tellWindowManager("_NET_RESTACK_WINDOW", window, {sourceUser, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE});
    } else {
        const std::uint32_t above = XCB_STACK_MODE_ABOVE;
        xcb_configure_window(connection_.get(), window, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    }
    connection_.flush();
}

void X11Windows::activate(xcb_window_t window) {
    if (areManaged()) {
        tellWindowManager("_NET_ACTIVE_WINDOW", window, {sourceUser, serverTime(), XCB_WINDOW_NONE});
    } else {
        raise(window);
        xcb_set_input_focus(connection_.get(), XCB_INPUT_FOCUS_POINTER_ROOT, window, XCB_CURRENT_TIME);
    }
    connection_.synchronize();
}

} // namespace vesk
