#include "VeskPlatform/Linux/Http/CurlHttpTransport.hpp"
#include "VeskPlatform/Linux/Http/UrlErrors.hpp"

#include <chrono>
#include <condition_variable>
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <mutex>
#include <netdb.h>
#include <string_view>

namespace vesk::test {
namespace {

/// A look-up of "hung.example", which goes on until it is let go, or for longer than any limit of a test.
struct HungLookup {
    std::mutex lock;
    std::condition_variable changed;
    bool isLetGo = false;
    bool isOver = false;

    void run() {
        std::unique_lock guard(lock);
        changed.wait_for(guard, std::chrono::seconds(10), [this] { return isLetGo; });
        isOver = true;
        changed.notify_all();
    }
    bool isOverYet() {
        const std::lock_guard guard(lock);
        return isOver;
    }
    void finish() {
        std::unique_lock guard(lock);
        isLetGo = true;
        changed.notify_all();
        changed.wait_for(guard, std::chrono::seconds(10), [this] { return isOver; });
    }
};

HungLookup& hungLookup() {
    static auto* lookup = new HungLookup; // a thread may still use it when the program ends
    return *lookup;
}

TEST(HungNameServer, EndsNoCallLate) {
    CurlHttpTransport transport({});
    HttpRequest request;
    request.url = "http://hung.example/";
    request.timeout = std::chrono::milliseconds(100);
    try {
        transport.send(request);
        ADD_FAILURE() << "sent";
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.code(), static_cast<std::int64_t>(UrlErrorCode::timedOut));
    }
    EXPECT_FALSE(hungLookup().isOverYet());
    hungLookup().finish();
}

} // namespace
} // namespace vesk::test

/// In place of the system's, which it asks for all other names.
extern "C" __attribute__((visibility("default"))) int getaddrinfo(const char* name, const char* service,
                                                                  const addrinfo* hints, addrinfo** result) {
    if (name != nullptr && std::string_view(name) == "hung.example") {
        vesk::test::hungLookup().run();
        return EAI_AGAIN;
    }
    static const auto next = reinterpret_cast<decltype(&::getaddrinfo)>(::dlsym(RTLD_NEXT, "getaddrinfo"));
    return next(name, service, hints, result);
}
