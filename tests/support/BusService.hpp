#pragma once

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <systemd/sd-bus.h>
#include <thread>

namespace vesk::test {

/// A service of our own on a bus, in a thread of its own. Derived classes answer its method calls, and stop in their
/// destructors, since a call may still come. What they answer with is set before they serve, or in `change`.
class BusService {
public:
    BusService(const BusService&) = delete;
    BusService& operator=(const BusService&) = delete;
    virtual ~BusService();

    /// Takes the name and serves from now on. Throws std::runtime_error.
    void serve(const std::string& address, const std::string& name);
    /// Serves no more, and gives the name back.
    void stop();
    /// Waits until the bus is gone.
    void serveUntilTheBusEnds() { thread_.join(); }

    /// Calls `change` while no method call is being answered.
    template <class Change> void change(const Change& change) {
        const std::scoped_lock guard(lock_);
        change();
    }

    /// Calls of methods of this name are received and never answered.
    std::string unanswered;

protected:
    BusService() = default;

    using Reply = std::function<void(sd_bus_message& reply)>;
    /// Whether a call is of this method with these types; wrong types are a method that does not exist.
    static bool is(sd_bus_message& call, const char* interface, const char* method, const char* types = "");
    static int reply(sd_bus_message& call, const Reply& write = {});
    static int fail(sd_bus_message& call, const std::string& name, const std::string& message);
    /// Called in the service's thread, under its lock. Zero for a call that nobody knows.
    virtual int answer(sd_bus_message& call) = 0;

    std::mutex lock_;

private:
    struct Release {
        void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
    };
    static int receive(sd_bus_message* call, void* self, sd_bus_error*);
    void loop();

    std::unique_ptr<sd_bus, Release> bus_;
    int wake_ = -1;
    std::thread thread_;
};

} // namespace vesk::test
