#pragma once

#include "VeskSupport/Records.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Sizes are bytes, dates milliseconds since 1970 UTC. `rootPath` and `documentsPath` are the root of the scope.

namespace vesk {

/// The root that paths are relative to: the user's drive, or the documents of the application's own container.
enum class CapabilityICloudScope { drive, appDocuments };

template <>
inline constexpr auto rawValueTable<CapabilityICloudScope> =
    std::to_array<std::pair<CapabilityICloudScope, std::string_view>>({
        {CapabilityICloudScope::drive, "drive"},
        {CapabilityICloudScope::appDocuments, "app_documents"},
    });

/// A listing fills in neither size nor date.
struct CapabilityICloudEntry {
    std::string name;
    std::string relativePath;
    bool isDirectory = false;
    std::optional<std::int64_t> sizeBytes;
    std::optional<std::int64_t> modifiedAtMs;

    bool operator==(const CapabilityICloudEntry&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityICloudEntry> =
    recordFields(required("name", &CapabilityICloudEntry::name),
                 required("relativePath", &CapabilityICloudEntry::relativePath),
                 required("isDirectory", &CapabilityICloudEntry::isDirectory),
                 optional("sizeBytes", &CapabilityICloudEntry::sizeBytes),
                 optional("modifiedAtMs", &CapabilityICloudEntry::modifiedAtMs));

struct CapabilityICloudRootResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityICloudScope scope{};
    std::string rootPath;
    std::string containerIdentifier;
    std::string containerPath;
    std::string documentsPath;
    std::string detail;

    bool operator==(const CapabilityICloudRootResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityICloudRootResponse> =
    recordFields(required("brokerPath", &CapabilityICloudRootResponse::brokerPath),
                 optional("bundlePath", &CapabilityICloudRootResponse::bundlePath),
                 required("scope", &CapabilityICloudRootResponse::scope),
                 required("rootPath", &CapabilityICloudRootResponse::rootPath),
                 required("containerIdentifier", &CapabilityICloudRootResponse::containerIdentifier),
                 required("containerPath", &CapabilityICloudRootResponse::containerPath),
                 required("documentsPath", &CapabilityICloudRootResponse::documentsPath),
                 required("detail", &CapabilityICloudRootResponse::detail));

struct CapabilityICloudListResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityICloudScope scope{};
    std::string rootPath;
    std::string containerIdentifier;
    std::optional<std::string> baseRelativePath;
    std::string documentsPath;
    std::vector<CapabilityICloudEntry> entries;
    std::string detail;

    bool operator==(const CapabilityICloudListResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityICloudListResponse> =
    recordFields(required("brokerPath", &CapabilityICloudListResponse::brokerPath),
                 optional("bundlePath", &CapabilityICloudListResponse::bundlePath),
                 required("scope", &CapabilityICloudListResponse::scope),
                 required("rootPath", &CapabilityICloudListResponse::rootPath),
                 required("containerIdentifier", &CapabilityICloudListResponse::containerIdentifier),
                 optional("baseRelativePath", &CapabilityICloudListResponse::baseRelativePath),
                 required("documentsPath", &CapabilityICloudListResponse::documentsPath),
                 required("entries", &CapabilityICloudListResponse::entries),
                 required("detail", &CapabilityICloudListResponse::detail));

struct CapabilityICloudStatResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityICloudScope scope{};
    std::string rootPath;
    std::string containerIdentifier;
    std::optional<std::string> relativePath;
    std::string path;
    bool exists = false;
    bool isDirectory = false;
    std::optional<std::int64_t> sizeBytes;
    std::optional<std::int64_t> modifiedAtMs;
    std::string detail;

    bool operator==(const CapabilityICloudStatResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityICloudStatResponse> =
    recordFields(required("brokerPath", &CapabilityICloudStatResponse::brokerPath),
                 optional("bundlePath", &CapabilityICloudStatResponse::bundlePath),
                 required("scope", &CapabilityICloudStatResponse::scope),
                 required("rootPath", &CapabilityICloudStatResponse::rootPath),
                 required("containerIdentifier", &CapabilityICloudStatResponse::containerIdentifier),
                 optional("relativePath", &CapabilityICloudStatResponse::relativePath),
                 required("path", &CapabilityICloudStatResponse::path),
                 required("exists", &CapabilityICloudStatResponse::exists),
                 required("isDirectory", &CapabilityICloudStatResponse::isDirectory),
                 optional("sizeBytes", &CapabilityICloudStatResponse::sizeBytes),
                 optional("modifiedAtMs", &CapabilityICloudStatResponse::modifiedAtMs),
                 required("detail", &CapabilityICloudStatResponse::detail));

struct CapabilityICloudReadTextResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityICloudScope scope{};
    std::string rootPath;
    std::string containerIdentifier;
    /// Normalised; empty for the root.
    std::string relativePath;
    std::string path;
    std::string text;
    std::int64_t sizeBytes = 0;
    std::string detail;

    bool operator==(const CapabilityICloudReadTextResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityICloudReadTextResponse> =
    recordFields(required("brokerPath", &CapabilityICloudReadTextResponse::brokerPath),
                 optional("bundlePath", &CapabilityICloudReadTextResponse::bundlePath),
                 required("scope", &CapabilityICloudReadTextResponse::scope),
                 required("rootPath", &CapabilityICloudReadTextResponse::rootPath),
                 required("containerIdentifier", &CapabilityICloudReadTextResponse::containerIdentifier),
                 required("relativePath", &CapabilityICloudReadTextResponse::relativePath),
                 required("path", &CapabilityICloudReadTextResponse::path),
                 required("text", &CapabilityICloudReadTextResponse::text),
                 required("sizeBytes", &CapabilityICloudReadTextResponse::sizeBytes),
                 required("detail", &CapabilityICloudReadTextResponse::detail));

struct CapabilityICloudWriteTextResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityICloudScope scope{};
    std::string rootPath;
    std::string containerIdentifier;
    /// Normalised; empty for the root.
    std::string relativePath;
    std::string path;
    std::int64_t sizeBytes = 0;
    std::string detail;

    bool operator==(const CapabilityICloudWriteTextResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityICloudWriteTextResponse> =
    recordFields(required("brokerPath", &CapabilityICloudWriteTextResponse::brokerPath),
                 optional("bundlePath", &CapabilityICloudWriteTextResponse::bundlePath),
                 required("scope", &CapabilityICloudWriteTextResponse::scope),
                 required("rootPath", &CapabilityICloudWriteTextResponse::rootPath),
                 required("containerIdentifier", &CapabilityICloudWriteTextResponse::containerIdentifier),
                 required("relativePath", &CapabilityICloudWriteTextResponse::relativePath),
                 required("path", &CapabilityICloudWriteTextResponse::path),
                 required("sizeBytes", &CapabilityICloudWriteTextResponse::sizeBytes),
                 required("detail", &CapabilityICloudWriteTextResponse::detail));

struct CapabilityICloudMakeDirectoryResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityICloudScope scope{};
    std::string rootPath;
    std::string containerIdentifier;
    /// Normalised; empty for the root.
    std::string relativePath;
    std::string path;
    std::string detail;

    bool operator==(const CapabilityICloudMakeDirectoryResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityICloudMakeDirectoryResponse> =
    recordFields(required("brokerPath", &CapabilityICloudMakeDirectoryResponse::brokerPath),
                 optional("bundlePath", &CapabilityICloudMakeDirectoryResponse::bundlePath),
                 required("scope", &CapabilityICloudMakeDirectoryResponse::scope),
                 required("rootPath", &CapabilityICloudMakeDirectoryResponse::rootPath),
                 required("containerIdentifier", &CapabilityICloudMakeDirectoryResponse::containerIdentifier),
                 required("relativePath", &CapabilityICloudMakeDirectoryResponse::relativePath),
                 required("path", &CapabilityICloudMakeDirectoryResponse::path),
                 required("detail", &CapabilityICloudMakeDirectoryResponse::detail));

struct CapabilityICloudExportResponse {
    std::string brokerPath;
    std::optional<std::string> bundlePath;
    CapabilityICloudScope scope{};
    std::string rootPath;
    std::string containerIdentifier;
    /// Normalised; empty for the root.
    std::string relativePath;
    std::string sourcePath;
    std::string exportedPath;
    bool isDirectory = false;
    std::optional<std::int64_t> sizeBytes;
    /// Of a folder: everything in it at any depth, less what is hidden.
    std::optional<std::int64_t> itemCount;
    std::string detail;

    bool operator==(const CapabilityICloudExportResponse&) const = default;
};

template <>
inline constexpr auto recordTable<CapabilityICloudExportResponse> =
    recordFields(required("brokerPath", &CapabilityICloudExportResponse::brokerPath),
                 optional("bundlePath", &CapabilityICloudExportResponse::bundlePath),
                 required("scope", &CapabilityICloudExportResponse::scope),
                 required("rootPath", &CapabilityICloudExportResponse::rootPath),
                 required("containerIdentifier", &CapabilityICloudExportResponse::containerIdentifier),
                 required("relativePath", &CapabilityICloudExportResponse::relativePath),
                 required("sourcePath", &CapabilityICloudExportResponse::sourcePath),
                 required("exportedPath", &CapabilityICloudExportResponse::exportedPath),
                 required("isDirectory", &CapabilityICloudExportResponse::isDirectory),
                 optional("sizeBytes", &CapabilityICloudExportResponse::sizeBytes),
                 optional("itemCount", &CapabilityICloudExportResponse::itemCount),
                 required("detail", &CapabilityICloudExportResponse::detail));

} // namespace vesk
