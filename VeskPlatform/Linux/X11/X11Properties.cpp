#include "VeskPlatform/Linux/X11/X11Properties.hpp"

#include <utility>

namespace vesk {

namespace {

/// In units of four bytes: more windows than a server has.
constexpr std::uint32_t longestProperty = 1U << 20;

xcb_intern_atom_cookie_t ask(X11Connection& connection, const std::string& name) {
    return xcb_intern_atom(connection.get(), 0, static_cast<std::uint16_t>(name.size()), name.c_str());
}

xcb_atom_t atomIn(const XcbMemory<xcb_intern_atom_reply_t>& answer) {
    return answer ? answer->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

} // namespace

void X11Atoms::prepare(const std::vector<std::string>& names) {
    std::vector<std::pair<std::string, xcb_intern_atom_cookie_t>> asked;
    for (const std::string& name : names)
        if (!known_.contains(name)) asked.emplace_back(name, ask(connection_, name));
    for (const auto& [name, cookie] : asked) known_[name] = atomIn(connection_.answer<xcb_intern_atom_reply_t>(cookie));
}

xcb_atom_t X11Atoms::operator[](const std::string& name) {
    prepare({name});
    return known_[name];
}

X11Property::X11Property(X11Connection& connection, xcb_window_t window, xcb_atom_t name)
    : connection_(connection),
      cookie_(xcb_get_property(connection.get(), 0, window, name, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty)) {}

XcbMemory<xcb_get_property_reply_t> X11Property::answerOfFormat(std::uint8_t format) {
    auto answer = connection_.answer<xcb_get_property_reply_t>(cookie_);
    if (answer && answer->format != format) answer.reset();
    return answer;
}

std::vector<std::uint32_t> X11Property::numbers() {
    const auto answer = answerOfFormat(32);
    if (!answer) return {};
    const auto* const first = static_cast<const std::uint32_t*>(xcb_get_property_value(answer.get()));
    return {first, first + answer->value_len};
}

std::string X11Property::text() {
    const auto answer = answerOfFormat(8);
    if (!answer) return {};
    return {static_cast<const char*>(xcb_get_property_value(answer.get())), answer->value_len};
}

} // namespace vesk
