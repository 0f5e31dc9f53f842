#pragma once

#include "VeskPlatform/ScreenGeometry.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace vesk {

using DisplayIdentifier = std::uint32_t;

/// A picture in memory; adapters derive from it.
class ScreenImage {
public:
    virtual ~ScreenImage() = default;
    /// In pixels.
    virtual std::size_t width() const = 0;
    virtual std::size_t height() const = 0;
};

/// The active displays, in one order. Called on the main executor; each call reads live state. Throws ErrorRecord where
/// there is no session to look at.
class Displays {
public:
    virtual ~Displays() = default;

    /// How many there are; none where the system does not tell.
    virtual std::optional<std::size_t> count() = 0;
    /// At most `capacity` of them; none where the system does not tell.
    virtual std::optional<std::vector<DisplayIdentifier>> list(std::size_t capacity) = 0;
    /// The place of a display in the space that all share; empty for one that is gone.
    virtual ScreenRectangle bounds(DisplayIdentifier display) = 0;
    /// What the display shows now, upright, at its own resolution; null where it cannot be had.
    virtual std::unique_ptr<ScreenImage> capture(DisplayIdentifier display) = 0;
};

} // namespace vesk
