#include "VeskPlatform/Linux/Bus/BusCalls.hpp"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace vesk {

namespace {

using std::chrono::steady_clock;

/// A bus fails calls of a connection that waits for more answers than its configuration allows: 128 where nothing else
/// is said. This is below, and enough to keep a service busy.
constexpr std::size_t mostUnderway = 100;

std::uint64_t microsecondsUntil(steady_clock::time_point deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - steady_clock::now());
    return static_cast<std::uint64_t>(std::max<std::int64_t>(left.count(), 0));
}

} // namespace

void BusCalls::add(BusMessage call, Take take) { calls_.push_back({this, std::move(call), std::move(take), nullptr}); }

void BusCalls::addProperty(const BusObject& object, const char* name, const char* type, Take take) {
    auto takeValue = [type, take = std::move(take)](sd_bus_message& answer) {
        if (busRequired(sd_bus_message_enter_container(&answer, 'v', type)) > 0) take(answer);
    };
    add(object.with(object.path, "org.freedesktop.DBus.Properties"), "Get", std::move(takeValue), "ss",
        object.interface.c_str(), name);
}

void BusCalls::finish(steady_clock::time_point deadline) {
    sendSome();
    while (!isFinished()) {
        const std::uint64_t left = microsecondsUntil(deadline);
        if (left == 0) break;
        const int processed = sd_bus_process(bus_.native(), nullptr);
        if (processed < 0 || (processed == 0 && sd_bus_wait(bus_.native(), left) < 0)) break;
        sendSome();
    }
    for (Call& call : calls_) call.slot.reset();
    sent_ = answered_ = calls_.size();
}

/// A call that cannot be sent has no answer.
void BusCalls::sendSome() {
    for (; sent_ < calls_.size() && sent_ - answered_ < mostUnderway; ++sent_) {
        Call& call = calls_[sent_];
        sd_bus_slot* slot = nullptr;
        if (sd_bus_call_async(bus_.native(), &slot, call.message.get(), &BusCalls::receive, &call, UINT64_MAX) < 0)
            ++answered_;
        call.slot.reset(slot);
        call.message.reset();
    }
}

int BusCalls::receive(sd_bus_message* answer, void* data, sd_bus_error*) {
    const Call& call = *static_cast<const Call*>(data);
    ++call.owner->answered_;
    if (sd_bus_message_is_method_error(answer, nullptr) > 0) return 0;
    try {
        call.take(*answer);
    } catch (const BusError&) { // not what was expected
    }
    return 0;
}

} // namespace vesk
