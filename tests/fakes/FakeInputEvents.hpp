#pragma once

#include "VeskPlatform/InputEvents.hpp"

#include <functional>
#include <limits>
#include <variant>
#include <vector>

namespace vesk::test {

using AnyInputEvent = std::variant<MouseEvent, KeyboardEvent>;

class FakePreparedEvent : public PreparedInputEvent {
public:
    explicit FakePreparedEvent(AnyInputEvent whole) : event(whole) {}
    AnyInputEvent event;
};

/// Records the events that are posted, in order; `whenPosted` sees each. Only the first `creatable` can be made.
class FakeInputEvents : public InputEvents {
public:
    std::size_t creatable = std::numeric_limits<std::size_t>::max();
    std::size_t created = 0;
    std::vector<AnyInputEvent> posted;
    std::function<void(const AnyInputEvent&)> whenPosted = [](const AnyInputEvent&) {};

    std::unique_ptr<PreparedInputEvent> create(const MouseEvent& event) override { return prepared(event); }
    std::unique_ptr<PreparedInputEvent> create(const KeyboardEvent& event) override { return prepared(event); }
    void post(const PreparedInputEvent& event) override {
        posted.push_back(dynamic_cast<const FakePreparedEvent&>(event).event);
        whenPosted(posted.back());
    }

private:
    std::unique_ptr<PreparedInputEvent> prepared(const AnyInputEvent& event) {
        if (created == creatable) return nullptr;
        ++created;
        return std::make_unique<FakePreparedEvent>(event);
    }
};

} // namespace vesk::test
