#pragma once

#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace vesk {

struct CapabilityScreenshotResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    /// Absolute.
    std::string imagePath;
    std::string mimeType;
    /// In pixels.
    std::int64_t width = 0;
    std::int64_t height = 0;

    bool operator==(const CapabilityScreenshotResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityScreenshotResponse> =
    recordFields(required("brokerPath", &CapabilityScreenshotResponse::brokerPath),
                 optional("bundlePath", &CapabilityScreenshotResponse::bundlePath),
                 required("imagePath", &CapabilityScreenshotResponse::imagePath),
                 required("mimeType", &CapabilityScreenshotResponse::mimeType),
                 required("width", &CapabilityScreenshotResponse::width),
                 required("height", &CapabilityScreenshotResponse::height));

} // namespace vesk
