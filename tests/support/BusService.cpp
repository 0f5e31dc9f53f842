#include "tests/support/BusService.hpp"

#include <poll.h>
#include <stdexcept>
#include <string_view>
#include <sys/eventfd.h>
#include <unistd.h>

namespace vesk::test {

BusService::~BusService() { stop(); }

void BusService::serve(const std::string& address, const std::string& name) {
    sd_bus* bus = nullptr;
    sd_bus_new(&bus);
    bus_.reset(bus);
    sd_bus_set_address(bus, address.c_str());
    sd_bus_set_bus_client(bus, 1);
    sd_bus_add_fallback(bus, nullptr, "/", &BusService::receive, this);
    if (sd_bus_start(bus) < 0 || sd_bus_request_name(bus, name.c_str(), 0) < 0)
        throw std::runtime_error("cannot serve " + name + " at " + address);
    wake_ = ::eventfd(0, EFD_CLOEXEC);
    thread_ = std::thread([this] { loop(); });
}

void BusService::stop() {
    if (thread_.joinable()) {
        ::eventfd_write(wake_, 1);
        thread_.join();
    }
    bus_.reset();
    if (wake_ >= 0) ::close(wake_);
    wake_ = -1;
}

void BusService::loop() {
    for (;;) {
        const int processed = sd_bus_process(bus_.get(), nullptr);
        if (processed < 0) return;
        if (processed > 0) continue;
        pollfd events[] = {{sd_bus_get_fd(bus_.get()), static_cast<short>(sd_bus_get_events(bus_.get())), 0},
                           {wake_, POLLIN, 0}};
        if (::poll(events, 2, -1) < 0 || events[1].revents != 0) return;
    }
}

int BusService::receive(sd_bus_message* call, void* self, sd_bus_error*) {
    auto& service = *static_cast<BusService*>(self);
    const std::scoped_lock guard(service.lock_);
    if (!service.unanswered.empty() && service.unanswered == sd_bus_message_get_member(call)) return 1;
    return service.answer(*call);
}

bool BusService::is(sd_bus_message& call, const char* interface, const char* method, const char* types) {
    return sd_bus_message_is_method_call(&call, interface, method) > 0
           && std::string_view(sd_bus_message_get_signature(&call, 1)) == types;
}

int BusService::reply(sd_bus_message& call, const Reply& write) {
    sd_bus_message* message = nullptr;
    sd_bus_message_new_method_return(&call, &message);
    if (write) write(*message);
    const int sent = sd_bus_send(nullptr, message, nullptr);
    sd_bus_message_unref(message);
    return sent < 0 ? sent : 1;
}

int BusService::fail(sd_bus_message& call, const std::string& name, const std::string& message) {
    const sd_bus_error error{name.c_str(), message.c_str(), 0};
    return sd_bus_reply_method_error(&call, &error);
}

} // namespace vesk::test
