#include "VeskPlatform/Linux/Wayland/PortalInputEvents.hpp"

#include "VeskPlatform/Linux/Desktop/InputSymbols.hpp"
#include "VeskSupport/Utf16.hpp"

#include <algorithm>
#include <linux/input-event-codes.h>
#include <ranges>
#include <utility>
#include <variant>

namespace vesk {
namespace {

class PreparedPortalEvent : public PreparedInputEvent {
public:
    explicit PreparedPortalEvent(std::variant<MouseEvent, KeyboardEvent> whole) : event(whole) {}
    std::variant<MouseEvent, KeyboardEvent> event;
};

/// The coordinate on a monitor that is nearest to one of the desktop; a size of 0 is not known, and holds all.
double nearestWithin(double coordinate, double start, double length) {
    const double within = std::max(coordinate - start, 0.0);
    return length > 0 && within >= length ? std::max(length - 1, 0.0) : within;
}

ScreenPoint nearestPoint(const RemoteStream& stream, ScreenPoint point) {
    return {nearestWithin(point.x, stream.bounds.x, stream.bounds.width),
            nearestWithin(point.y, stream.bounds.y, stream.bounds.height)};
}

double squaredDistance(const RemoteStream& stream, ScreenPoint point) {
    const ScreenPoint nearest = nearestPoint(stream, point);
    const double x = nearest.x + stream.bounds.x - point.x, y = nearest.y + stream.bounds.y - point.y;
    return x * x + y * y;
}

/// The far edge of the desktop lies on no monitor, and the portal refuses what lies outside, so the nearest one counts.
const RemoteStream& streamAt(const std::vector<RemoteStream>& streams, ScreenPoint point) {
    return *std::ranges::min_element(streams, {},
                                     [point](const RemoteStream& stream) { return squaredDistance(stream, point); });
}

bool isTypeable(const KeyboardEvent& event) {
    if (!event.unit) return symbolOfKeyCode(event.keyCode).has_value();
    return isFirstUnit(*event.unit) || isSecondUnit(*event.unit) || symbolOfCharacter(*event.unit);
}

} // namespace

PortalInputEvents::PortalInputEvents(DesktopPortal& portal, RestoreToken token)
    : portal_(portal), token_(std::move(token)) {}

RemoteDesktopSession* PortalInputEvents::session() {
    if (!std::exchange(isAsked_, true)) session_ = RemoteDesktopSession::start(portal_, token_);
    return session_.get();
}

std::unique_ptr<PreparedInputEvent> PortalInputEvents::create(const MouseEvent& event) {
    const auto* open = session();
    if (open != nullptr && !open->hasScreenCast()) throw PortalMissing("ScreenCast");
    if (open == nullptr || !open->hasPointer() || open->streams().empty() || event.button > 1) return nullptr;
    return std::make_unique<PreparedPortalEvent>(event);
}

std::unique_ptr<PreparedInputEvent> PortalInputEvents::create(const KeyboardEvent& event) {
    if (!isTypeable(event)) return nullptr;
    const auto* open = session();
    if (open == nullptr || !open->hasKeyboard()) return nullptr;
    return std::make_unique<PreparedPortalEvent>(event);
}

void PortalInputEvents::post(const PreparedInputEvent& event) {
    std::visit([this](const auto& whole) { send(whole); }, dynamic_cast<const PreparedPortalEvent&>(event).event);
}

void PortalInputEvents::send(const MouseEvent& event) {
    if (pointer_ != event.point) {
        const RemoteStream& stream = streamAt(session_->streams(), event.point);
        session_->move(stream, nearestPoint(stream, event.point));
        pointer_ = event.point;
    }
    if (event.type == MouseEventType::moved) return;
    const bool isDown = event.type == MouseEventType::leftDown || event.type == MouseEventType::rightDown;
    session_->button(event.button == 0 ? BTN_LEFT : BTN_RIGHT, isDown);
}

void PortalInputEvents::send(const KeyboardEvent& event) {
    const auto symbol = event.unit ? symbolOfUnit(*event.unit, event.keyDown) : symbolOfKeyCode(event.keyCode);
    if (!symbol) return;
    const auto modifiers = symbolsOfModifiers(event.flags);
    if (event.keyDown)
        for (const auto modifier : modifiers) session_->key(modifier, true);
    session_->key(*symbol, event.keyDown);
    if (!event.keyDown)
        for (const auto modifier : std::views::reverse(modifiers)) session_->key(modifier, false);
}

/// Nothing for the first unit of two; the second one types the whole character.
std::optional<std::uint32_t> PortalInputEvents::symbolOfUnit(char16_t unit, bool isDown) {
    if (isFirstUnit(unit)) {
        firstUnit_ = unit;
        return std::nullopt;
    }
    const char16_t first = isDown ? firstUnit_ : std::exchange(firstUnit_, u'\0');
    if (!isSecondUnit(unit)) return symbolOfCharacter(unit);
    return first == 0 ? std::nullopt : symbolOfCharacter(joinedUnits(first, unit));
}

} // namespace vesk
