#include "VeskPlatform/Apple/AXElement.hpp"

#include <algorithm>

namespace vesk {

AXElementHandle AXElements::handle(CFOwned<AXUIElementRef> element) {
    const std::lock_guard lock(mutex_);
    forgetReleased();
    Known& known = known_[element.get()];
    if (!known.key) known.key = retained(element.get());
    AXElementHandle held = known.handle.lock();
    if (!held) {
        held = std::make_shared<const AXElement>(std::move(element));
        known.handle = held;
    }
    return held;
}

/// Often enough that those which nobody holds are never many more than the others.
void AXElements::forgetReleased() {
    if (known_.size() < enough_) return;
    std::erase_if(known_, [](const auto& entry) { return entry.second.handle.expired(); });
    enough_ = std::max<std::size_t>(1024, 2 * known_.size());
}

CFOwned<AXUIElementRef> retained(AXUIElementRef element) {
    return CFOwned<AXUIElementRef>(static_cast<AXUIElementRef>(CFRetain(element)));
}

} // namespace vesk
