#pragma once

#include "VeskSupport/Records.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vesk {

enum class CapabilityMediaComposeProfile { instagramReel };

template <>
inline constexpr auto rawValueTable<CapabilityMediaComposeProfile> =
    std::to_array<std::pair<CapabilityMediaComposeProfile, std::string_view>>({
        {CapabilityMediaComposeProfile::instagramReel, "instagram_reel"},
    });

struct CapabilityMediaComposeInput {
    std::string path;
    /// A hint such as "image" or "video".
    std::optional<std::string> kind;
    std::optional<std::string> mimeType;
    /// The name that the user knows the input by.
    std::optional<std::string> fileName;

    bool operator==(const CapabilityMediaComposeInput&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMediaComposeInput> =
    recordFields(required("path", &CapabilityMediaComposeInput::path),
                 optional("kind", &CapabilityMediaComposeInput::kind),
                 optional("mimeType", &CapabilityMediaComposeInput::mimeType),
                 optional("fileName", &CapabilityMediaComposeInput::fileName));

struct CapabilityMediaComposeRequest {
    CapabilityMediaComposeProfile profile{};
    std::vector<CapabilityMediaComposeInput> inputs;
    std::string outputPath;
    std::optional<double> imageDurationSeconds;

    bool operator==(const CapabilityMediaComposeRequest&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMediaComposeRequest> =
    recordFields(required("profile", &CapabilityMediaComposeRequest::profile),
                 required("inputs", &CapabilityMediaComposeRequest::inputs),
                 required("outputPath", &CapabilityMediaComposeRequest::outputPath),
                 optional("imageDurationSeconds", &CapabilityMediaComposeRequest::imageDurationSeconds));

struct CapabilityMediaComposeResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    std::string filePath;
    std::string fileName;
    std::string mimeType;
    CapabilityMediaComposeProfile profile{};
    /// In pixels.
    std::int64_t width = 0;
    std::int64_t height = 0;
    double durationSeconds = 0;
    std::int64_t inputCount = 0;
    std::string detail;

    bool operator==(const CapabilityMediaComposeResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityMediaComposeResponse> =
    recordFields(required("brokerPath", &CapabilityMediaComposeResponse::brokerPath),
                 optional("bundlePath", &CapabilityMediaComposeResponse::bundlePath),
                 required("filePath", &CapabilityMediaComposeResponse::filePath),
                 required("fileName", &CapabilityMediaComposeResponse::fileName),
                 required("mimeType", &CapabilityMediaComposeResponse::mimeType),
                 required("profile", &CapabilityMediaComposeResponse::profile),
                 required("width", &CapabilityMediaComposeResponse::width),
                 required("height", &CapabilityMediaComposeResponse::height),
                 required("durationSeconds", &CapabilityMediaComposeResponse::durationSeconds),
                 required("inputCount", &CapabilityMediaComposeResponse::inputCount),
                 required("detail", &CapabilityMediaComposeResponse::detail));

} // namespace vesk
