#pragma once

#include "VeskPlatform/Displays.hpp"
#include "VeskPlatform/Linux/Wayland/OutputLayout.hpp"
#include "VeskPlatform/Linux/Wayland/Picture.hpp"

#include <functional>
#include <memory>
#include <set>
#include <vector>

namespace vesk {

/// The monitors of a compositor. It gives one picture of all of them, which is asked for once and cut; a monitor that
/// is captured again has a new one taken. Images are PixelImages.
class WaylandDisplays : public Displays {
public:
    using TakePicture = std::function<std::shared_ptr<const Picture>()>;
    using ListOutputs = std::function<std::vector<OutputPlace>()>;

    WaylandDisplays(ListOutputs outputs, TakePicture takePicture);

    std::optional<std::size_t> count() override;
    std::optional<std::vector<DisplayIdentifier>> list(std::size_t capacity) override;
    ScreenRectangle bounds(DisplayIdentifier display) override;
    std::unique_ptr<ScreenImage> capture(DisplayIdentifier display) override;

private:
    ListOutputs outputs_;
    TakePicture takePicture_;
    /// The last picture, the monitors as they stood then, and which of them have been cut from it.
    std::shared_ptr<const Picture> picture_;
    std::vector<OutputPlace> places_;
    std::set<DisplayIdentifier> captured_;
};

} // namespace vesk
