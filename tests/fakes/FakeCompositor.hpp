#pragma once

#include "tests/support/TemporaryFolder.hpp"

#include <cstdint>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <sys/eventfd.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <wayland-server.h>
#include <xdg-output-unstable-v1-server-protocol.h>

namespace vesk::test {

/// A monitor as a compositor tells of it. The logical place is what xdg-output says.
struct FakeMonitor {
    std::pair<std::int32_t, std::int32_t> position{0, 0}, mode{800, 600};
    std::int32_t scale = 1, transform = WL_OUTPUT_TRANSFORM_NORMAL;
    std::pair<std::int32_t, std::int32_t> logicalPosition{0, 0}, logicalSize{800, 600};
};

/// A compositor with monitors and nothing else, in a thread of its own. `display` is as in WAYLAND_DISPLAY.
class FakeCompositor {
public:
    /// Without `hasPlaces` it knows no xdg-output.
    explicit FakeCompositor(bool hasPlaces = true) : display_(wl_display_create()), wake_(::eventfd(0, EFD_CLOEXEC)) {
        if (wl_display_add_socket(display_, display().c_str()) != 0) throw std::runtime_error("no Wayland socket");
        if (hasPlaces) wl_global_create(display_, &zxdg_output_manager_v1_interface, 2, nullptr, bindManager);
        waking_ = wl_event_loop_add_fd(wl_display_get_event_loop(display_), wake_, WL_EVENT_READABLE, runWork, this);
        thread_ = std::thread([this] { wl_display_run(display_); });
    }
    ~FakeCompositor() {
        run([this] { wl_display_terminate(display_); });
        thread_.join();
        wl_event_source_remove(waking_);
        wl_display_destroy_clients(display_);
        wl_display_destroy(display_);
        ::close(wake_);
    }
    FakeCompositor(const FakeCompositor&) = delete;
    FakeCompositor& operator=(const FakeCompositor&) = delete;

    std::string display() const { return folder_ / "wayland"; }
    void plug(const std::string& name, const FakeMonitor& monitor) {
        run([&] {
            Plugged& plugged = monitors_[name];
            plugged.monitor = monitor;
            plugged.global = wl_global_create(display_, &wl_output_interface, 3, &plugged.monitor, bindOutput);
        });
    }
    void unplug(const std::string& name) {
        run([&] { wl_global_remove(monitors_.at(name).global); });
    }

private:
    struct Plugged {
        FakeMonitor monitor;
        wl_global* global = nullptr;
    };

    /// In the compositor's thread, before it returns.
    void run(std::function<void()> work) {
        std::promise<void> done;
        work_ = [&] {
            work();
            done.set_value();
        };
        ::eventfd_write(wake_, 1);
        done.get_future().wait();
    }
    static int runWork(int wake, std::uint32_t, void* self) {
        eventfd_t count = 0;
        ::eventfd_read(wake, &count);
        std::exchange(static_cast<FakeCompositor*>(self)->work_, {})();
        return 0;
    }

    static void destroy(wl_client*, wl_resource* resource) { wl_resource_destroy(resource); }

    static void bindOutput(wl_client* client, void* data, std::uint32_t version, std::uint32_t id) {
        static const struct wl_output_interface requests {
            destroy
        };
        const auto& monitor = *static_cast<const FakeMonitor*>(data);
        wl_resource* output = wl_resource_create(client, &wl_output_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(output, &requests, data, nullptr);
        wl_output_send_geometry(output, monitor.position.first, monitor.position.second, 100, 100,
                                WL_OUTPUT_SUBPIXEL_UNKNOWN, "make", "model", monitor.transform);
        wl_output_send_mode(output, WL_OUTPUT_MODE_PREFERRED, 1, 1, 60000);
        wl_output_send_mode(output, WL_OUTPUT_MODE_CURRENT, monitor.mode.first, monitor.mode.second, 60000);
        if (version >= WL_OUTPUT_SCALE_SINCE_VERSION) wl_output_send_scale(output, monitor.scale);
        if (version >= WL_OUTPUT_DONE_SINCE_VERSION) wl_output_send_done(output);
    }

    static void bindManager(wl_client* client, void*, std::uint32_t version, std::uint32_t id) {
        static const struct zxdg_output_manager_v1_interface requests {
            destroy, givePlace
        };
        wl_resource* manager =
            wl_resource_create(client, &zxdg_output_manager_v1_interface, static_cast<int>(version), id);
        wl_resource_set_implementation(manager, &requests, nullptr, nullptr);
    }

    static void givePlace(wl_client* client, wl_resource* manager, std::uint32_t id, wl_resource* output) {
        static const struct zxdg_output_v1_interface requests {
            destroy
        };
        const auto& monitor = *static_cast<const FakeMonitor*>(wl_resource_get_user_data(output));
        wl_resource* place =
            wl_resource_create(client, &zxdg_output_v1_interface, wl_resource_get_version(manager), id);
        wl_resource_set_implementation(place, &requests, nullptr, nullptr);
        zxdg_output_v1_send_logical_position(place, monitor.logicalPosition.first, monitor.logicalPosition.second);
        zxdg_output_v1_send_logical_size(place, monitor.logicalSize.first, monitor.logicalSize.second);
        zxdg_output_v1_send_done(place);
    }

    TemporaryFolder folder_;
    wl_display* display_;
    int wake_;
    wl_event_source* waking_ = nullptr;
    std::function<void()> work_;
    std::map<std::string, Plugged> monitors_;
    std::thread thread_;
};

} // namespace vesk::test
