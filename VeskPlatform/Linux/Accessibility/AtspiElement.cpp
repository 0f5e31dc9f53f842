#include "VeskPlatform/Linux/Accessibility/AtspiElement.hpp"

#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"

#include <algorithm>
#include <systemd/sd-bus.h>

namespace vesk {

bool AtspiReference::isElement() const {
    return path != atspi::nullPath && sd_bus_service_name_is_valid(service.c_str()) > 0
           && sd_bus_object_path_is_valid(path.c_str()) > 0;
}

bool AtspiElement::isApplication() const { return reference.path == atspi::rootPath; }

AtspiElementHandle AtspiElements::application(AtspiReference reference, std::chrono::steady_clock::duration patience) {
    AtspiElementHandle root = handle(std::move(reference), std::make_shared<AtspiApplication>(), nullptr);
    *root->application = {.patience = patience};
    return root;
}

AtspiElementHandle AtspiElements::below(const AtspiElementHandle& parent, AtspiReference reference) {
    const AtspiElementHandle window = parent->isApplication() ? nullptr : parent->window ? parent->window : parent;
    return handle(std::move(reference), parent->application, window);
}

AtspiElementHandle AtspiElements::handle(AtspiReference reference, const std::shared_ptr<AtspiApplication>& application,
                                         const AtspiElementHandle& window) {
    std::weak_ptr<const AtspiElement>& known = handles_[reference];
    AtspiElementHandle held = known.lock();
    if (!held) {
        held = std::make_shared<const AtspiElement>(std::move(reference), application, window);
        known = held;
        forgetReleased();
    }
    return held;
}

/// Often enough that those which nobody holds are never many more than the others.
void AtspiElements::forgetReleased() {
    if (handles_.size() < enough_) return;
    std::erase_if(handles_, [](const auto& entry) { return entry.second.expired(); });
    enough_ = std::max<std::size_t>(1024, 2 * handles_.size());
}

} // namespace vesk
