#include "VeskPlatform/Linux/Wayland/OutputLayout.hpp"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <utility>
#include <xdg-output-unstable-v1-client-protocol.h>

namespace vesk {
namespace {

struct RegistryRelease {
    void operator()(wl_registry* registry) const { wl_registry_destroy(registry); }
};
struct ManagerRelease {
    void operator()(zxdg_output_manager_v1* manager) const { zxdg_output_manager_v1_destroy(manager); }
};
struct PlaceRelease {
    void operator()(zxdg_output_v1* place) const { zxdg_output_v1_destroy(place); }
};
struct OutputRelease {
    void operator()(wl_output* output) const {
        if (wl_output_get_version(output) >= WL_OUTPUT_RELEASE_SINCE_VERSION)
            wl_output_release(output);
        else
            wl_output_destroy(output);
    }
};

/// One monitor, filled by its events.
class Output {
public:
    explicit Output(wl_output* output) : output_(output) { wl_output_add_listener(output, &outputListener, this); }
    Output(const Output&) = delete;
    Output& operator=(const Output&) = delete;

    bool hasPlace() const { return place_ != nullptr; }
    void askForPlace(zxdg_output_manager_v1& manager) {
        place_.reset(zxdg_output_manager_v1_get_xdg_output(&manager, output_.get()));
        zxdg_output_v1_add_listener(place_.get(), &placeListener, this);
    }
    ScreenRectangle bounds() const { return placeOf(facts_); }

private:
    static Output& self(void* data) { return *static_cast<Output*>(data); }
    static void geometry(void* data, wl_output*, std::int32_t x, std::int32_t y, std::int32_t, std::int32_t,
                         std::int32_t, const char*, const char*, std::int32_t transform) {
        self(data).facts_.position = {static_cast<double>(x), static_cast<double>(y)};
        self(data).facts_.transform = transform;
    }
    static void mode(void* data, wl_output*, std::uint32_t flags, std::int32_t width, std::int32_t height,
                     std::int32_t) {
        if ((flags & WL_OUTPUT_MODE_CURRENT) != 0)
            self(data).facts_.mode = {static_cast<double>(width), static_cast<double>(height)};
    }
    static void scale(void* data, wl_output*, std::int32_t factor) { self(data).facts_.scale = factor; }
    static void done(void*, wl_output*) {}
    static void text(void*, wl_output*, const char*) {}

    static void logicalPosition(void* data, zxdg_output_v1*, std::int32_t x, std::int32_t y) {
        self(data).facts_.logicalPosition = {static_cast<double>(x), static_cast<double>(y)};
    }
    static void logicalSize(void* data, zxdg_output_v1*, std::int32_t width, std::int32_t height) {
        self(data).facts_.logicalSize = {static_cast<double>(width), static_cast<double>(height)};
    }
    static void placeDone(void*, zxdg_output_v1*) {}
    static void placeText(void*, zxdg_output_v1*, const char*) {}

    static constexpr wl_output_listener outputListener{
        .geometry = geometry, .mode = mode, .done = done, .scale = scale, .name = text, .description = text};
    static constexpr zxdg_output_v1_listener placeListener{.logical_position = logicalPosition,
                                                           .logical_size = logicalSize,
                                                           .done = placeDone,
                                                           .name = placeText,
                                                           .description = placeText};

    std::unique_ptr<wl_output, OutputRelease> output_;
    std::unique_ptr<zxdg_output_v1, PlaceRelease> place_;
    OutputFacts facts_;
};

} // namespace

ScreenRectangle placeOf(const OutputFacts& facts) {
    const double scale = std::max(facts.scale, 1);
    ScreenSize own{facts.mode.width / scale, facts.mode.height / scale};
    // The transforms by a quarter, mirrored or not, are the odd ones.
    if (facts.transform % 2 != 0) std::swap(own.width, own.height);
    const ScreenPoint position = facts.logicalPosition.value_or(facts.position);
    const ScreenSize size = facts.logicalSize.value_or(own);
    return {position.x, position.y, size.width, size.height};
}

/// The globals of the compositor that matter here, kept up to date by its events.
class OutputLayout::Registry {
public:
    explicit Registry(WaylandConnection& connection)
        : connection_(connection), registry_(wl_display_get_registry(connection.get())) {
        wl_registry_add_listener(registry_.get(), &listener, this);
    }
    Registry(const Registry&) = delete;
    Registry& operator=(const Registry&) = delete;

    std::vector<OutputPlace> outputs() {
        connection_.roundtrip();
        if (std::exchange(hasNewOutputs_, false)) {
            askForPlaces();
            connection_.roundtrip();
        }
        std::vector<OutputPlace> places;
        for (const auto& [name, output] : outputs_) places.push_back({name, output->bounds()});
        return places;
    }

private:
    void askForPlaces() {
        for (const auto& [name, output] : outputs_)
            if (manager_ && !output->hasPlace()) output->askForPlace(*manager_);
    }

    static Registry& self(void* data) { return *static_cast<Registry*>(data); }
    static void added(void* data, wl_registry* registry, std::uint32_t name, const char* interface,
                      std::uint32_t version) {
        const auto bound = [&](const wl_interface& kind, std::uint32_t known) {
            return wl_registry_bind(registry, name, &kind, std::min(version, known));
        };
        if (std::string_view(interface) == wl_output_interface.name) {
            auto* output = static_cast<wl_output*>(bound(wl_output_interface, WL_OUTPUT_RELEASE_SINCE_VERSION));
            self(data).outputs_[name] = std::make_unique<Output>(output);
            self(data).hasNewOutputs_ = true;
        }
        if (std::string_view(interface) == zxdg_output_manager_v1_interface.name)
            self(data).manager_.reset(static_cast<zxdg_output_manager_v1*>(bound(zxdg_output_manager_v1_interface, 2)));
    }
    static void removed(void* data, wl_registry*, std::uint32_t name) { self(data).outputs_.erase(name); }

    static constexpr wl_registry_listener listener{.global = added, .global_remove = removed};

    WaylandConnection& connection_;
    std::unique_ptr<wl_registry, RegistryRelease> registry_;
    std::unique_ptr<zxdg_output_manager_v1, ManagerRelease> manager_;
    std::map<std::uint32_t, std::unique_ptr<Output>> outputs_;
    bool hasNewOutputs_ = false;
};

OutputLayout::OutputLayout(WaylandConnection& connection) : registry_(std::make_unique<Registry>(connection)) {}
OutputLayout::~OutputLayout() = default;

std::vector<OutputPlace> OutputLayout::outputs() { return registry_->outputs(); }

} // namespace vesk
