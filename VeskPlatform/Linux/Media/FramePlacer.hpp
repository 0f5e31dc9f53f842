#pragma once

#include "VeskPlatform/Linux/Media/FilterChains.hpp"

#include <optional>
#include <utility>

namespace vesk {

/// Runs pictures through filters. They are set up for the first picture and again whenever the form changes.
class FramePlacer {
public:
    explicit FramePlacer(FilterChain chain) : chain_(std::move(chain)) {}

    /// Throws FfmpegError.
    FramePointer placed(const AVFrame& picture);

private:
    /// What the filters are set up for.
    struct Form {
        int width = 0, height = 0, format = 0, matrix = 0, range = 0, transfer = 0;
        bool operator==(const Form&) const = default;
    };
    static Form formOf(const AVFrame& picture);
    void setUp(const AVFrame& picture);

    FilterChain chain_;
    std::optional<Form> form_;
    FilterGraphPointer graph_;
    AVFilterContext* source_ = nullptr;
    AVFilterContext* sink_ = nullptr;
};

} // namespace vesk
