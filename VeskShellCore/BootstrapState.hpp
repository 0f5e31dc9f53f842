#pragma once

#include "VeskSupport/Records.hpp"

#include <optional>
#include <string>
#include <vector>

// What the packaged runtime finds at its start. All words and codes are its own and are passed on as text.

namespace vesk {

/// Something that keeps the runtime from being ready. The codes are the runtime's own.
struct BootstrapIssue {
    std::string code;
    std::string message;

    bool operator==(const BootstrapIssue&) const = default;
};

template <>
inline constexpr auto recordTable<BootstrapIssue> =
    recordFields(required("code", &BootstrapIssue::code), required("message", &BootstrapIssue::message));

/// What the user should do next, with the command that does it.
struct BootstrapNextAction {
    std::string code;
    std::string title;
    std::string detail;
    std::string command;
    bool blocking = false;

    bool operator==(const BootstrapNextAction&) const = default;
};

template <>
inline constexpr auto recordTable<BootstrapNextAction> =
    recordFields(required("code", &BootstrapNextAction::code), required("title", &BootstrapNextAction::title),
                 required("detail", &BootstrapNextAction::detail), required("command", &BootstrapNextAction::command),
                 required("blocking", &BootstrapNextAction::blocking));

struct BootstrapDirectoryState {
    std::string path;
    bool exists = false;

    bool operator==(const BootstrapDirectoryState&) const = default;
};

template <>
inline constexpr auto recordTable<BootstrapDirectoryState> = recordFields(
    required("path", &BootstrapDirectoryState::path), required("exists", &BootstrapDirectoryState::exists));

/// A program that the runtime needs, and the browser where that program needs one.
struct BootstrapRequiredPlatformToolState {
    std::string name;
    std::string version;
    bool required = false;
    bool installed = false;
    bool browserRequired = false;
    std::optional<bool> browserReady{};
    std::optional<std::string> binaryPath{};
    std::optional<std::string> browserExecutablePath{};

    bool operator==(const BootstrapRequiredPlatformToolState&) const = default;
};

template <>
inline constexpr auto recordTable<BootstrapRequiredPlatformToolState> =
    recordFields(required("name", &BootstrapRequiredPlatformToolState::name),
                 required("version", &BootstrapRequiredPlatformToolState::version),
                 required("required", &BootstrapRequiredPlatformToolState::required),
                 required("installed", &BootstrapRequiredPlatformToolState::installed),
                 required("browserRequired", &BootstrapRequiredPlatformToolState::browserRequired),
                 optional("browserReady", &BootstrapRequiredPlatformToolState::browserReady),
                 optional("binaryPath", &BootstrapRequiredPlatformToolState::binaryPath),
                 optional("browserExecutablePath", &BootstrapRequiredPlatformToolState::browserExecutablePath));

/// `issueCodes` are the codes of the issues that keep the step from being ready.
struct BootstrapOnboardingStep {
    std::string id;
    std::string title;
    bool ready = false;
    std::vector<std::string> issueCodes;

    bool operator==(const BootstrapOnboardingStep&) const = default;
};

template <>
inline constexpr auto recordTable<BootstrapOnboardingStep> =
    recordFields(required("id", &BootstrapOnboardingStep::id), required("title", &BootstrapOnboardingStep::title),
                 required("ready", &BootstrapOnboardingStep::ready),
                 required("issueCodes", &BootstrapOnboardingStep::issueCodes));

} // namespace vesk
