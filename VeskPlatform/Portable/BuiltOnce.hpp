#pragma once

#include <optional>
#include <utility>

namespace vesk {

/// The object in `slot`, made from `arguments` the first time.
template <class T, class... Arguments> T& builtOnce(std::optional<T>& slot, Arguments&&... arguments) {
    if (!slot) slot.emplace(std::forward<Arguments>(arguments)...);
    return *slot;
}

} // namespace vesk
