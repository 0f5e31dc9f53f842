#pragma once

#include "VeskSupport/Records.hpp"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace vesk {

/// Names one release. Its parts have no white space at their ends, whether they were given or read, so that two of the
/// same release are equal.
struct AppUpdateReleaseIdentity {
    AppUpdateReleaseIdentity() = default;
    AppUpdateReleaseIdentity(std::string_view version, std::string_view build, std::string_view channel);

    std::string version;
    std::string build;
    std::string channel;

    bool operator==(const AppUpdateReleaseIdentity&) const = default;
};

template <>
inline constexpr auto recordTable<AppUpdateReleaseIdentity> =
    recordFields(required("version", &AppUpdateReleaseIdentity::version),
                 required("build", &AppUpdateReleaseIdentity::build),
                 required("channel", &AppUpdateReleaseIdentity::channel));

void read(JsonValue& json, const records::Path& path, AppUpdateReleaseIdentity& out);

/// How far an update has come.
enum class AppUpdateActivationPhase {
    /// The record is written, the assistant is not yet stopped.
    preparingRelaunch,
    /// The assistant is down, and the update may go on.
    assistantStopped,
    /// The updater is in control; a relaunch is expected.
    sparkleHandoff,
    /// The new version is repairing the assistant.
    recoveringAfterRelaunch,
    /// Recovery gave up; the record stays to be looked at.
    activationFailed
};

template <>
inline constexpr auto rawValueTable<AppUpdateActivationPhase> =
    std::to_array<std::pair<AppUpdateActivationPhase, std::string_view>>({
        {AppUpdateActivationPhase::preparingRelaunch, "preparing_relaunch"},
        {AppUpdateActivationPhase::assistantStopped, "assistant_stopped"},
        {AppUpdateActivationPhase::sparkleHandoff, "sparkle_handoff"},
        {AppUpdateActivationPhase::recoveringAfterRelaunch, "recovering_after_relaunch"},
        {AppUpdateActivationPhase::activationFailed, "activation_failed"},
    });

/// What has to be known after the application was replaced and started again. Its dates are kept to the second.
struct AppUpdateActivationRecord {
    static constexpr std::int64_t knownSchemaVersion = 1;

    std::int64_t schemaVersion = knownSchemaVersion;
    Uuid updateID;
    std::string sourceVersion;
    std::string sourceBuild;
    std::string targetVersion;
    std::string targetBuild;
    /// Of the source and of the target: an update never changes it.
    std::string channel;
    bool assistantWasInstalled = false;
    bool assistantWasRunning = false;
    std::optional<std::int64_t> assistantPIDBeforeUpdate;
    AppUpdateActivationPhase phase = AppUpdateActivationPhase::preparingRelaunch;
    Instant createdAt{};
    Instant updatedAt{};
    std::int64_t recoveryAttempts = 0;
    /// A short word for machines such as "assistant_stop_timeout", never a message.
    std::optional<std::string> lastErrorClass;

    AppUpdateReleaseIdentity sourceIdentity() const;
    AppUpdateReleaseIdentity targetIdentity() const;
    bool operator==(const AppUpdateActivationRecord&) const = default;
};

template <>
inline constexpr auto recordTable<AppUpdateActivationRecord> =
    recordFields(required("schema_version", &AppUpdateActivationRecord::schemaVersion),
                 required("update_id", &AppUpdateActivationRecord::updateID),
                 required("source_version", &AppUpdateActivationRecord::sourceVersion),
                 required("source_build", &AppUpdateActivationRecord::sourceBuild),
                 required("target_version", &AppUpdateActivationRecord::targetVersion),
                 required("target_build", &AppUpdateActivationRecord::targetBuild),
                 required("channel", &AppUpdateActivationRecord::channel),
                 required("assistant_was_installed", &AppUpdateActivationRecord::assistantWasInstalled),
                 required("assistant_was_running", &AppUpdateActivationRecord::assistantWasRunning),
                 optional("assistant_pid_before_update", &AppUpdateActivationRecord::assistantPIDBeforeUpdate),
                 required("phase", &AppUpdateActivationRecord::phase),
                 required("created_at", &AppUpdateActivationRecord::createdAt),
                 required("updated_at", &AppUpdateActivationRecord::updatedAt),
                 required("recovery_attempts", &AppUpdateActivationRecord::recoveryAttempts),
                 optional("last_error_class", &AppUpdateActivationRecord::lastErrorClass));

} // namespace vesk
