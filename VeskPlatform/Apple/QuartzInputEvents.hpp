#pragma once

#include "VeskPlatform/InputEvents.hpp"

namespace vesk {

/// Events of no source, posted to the system's event tap at the level of the hardware. A UTF-16 unit is typed by events
/// of its own, also one of two: the system's text input joins them. Posting needs the Accessibility permission; without
/// it the system drops the events.
class QuartzInputEvents : public InputEvents {
public:
    std::unique_ptr<PreparedInputEvent> create(const MouseEvent& event) override;
    std::unique_ptr<PreparedInputEvent> create(const KeyboardEvent& event) override;
    void post(const PreparedInputEvent& event) override;
};

} // namespace vesk
