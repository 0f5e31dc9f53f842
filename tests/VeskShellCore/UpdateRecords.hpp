#pragma once

#include "VeskShellCore/AppUpdateActivationRecord.hpp"

#include <chrono>
#include <string>

namespace vesk::test {

/// A record with every field, as its file holds it (but for the line end).
inline const std::string updateRecordLiteral = R"({
  "assistant_pid_before_update" : 4711,
  "assistant_was_installed" : true,
  "assistant_was_running" : true,
  "channel" : "stable",
  "created_at" : "2026-04-26T14:03:22Z",
  "last_error_class" : "assistant_stop_timeout",
  "phase" : "sparkle_handoff",
  "recovery_attempts" : 2,
  "schema_version" : 1,
  "source_build" : "212",
  "source_version" : "1.4.0",
  "target_build" : "230",
  "target_version" : "1.5.0",
  "update_id" : "0E984725-C51C-4BF4-9960-E1C80E27ABA0",
  "updated_at" : "2026-04-26T14:05:00Z"
})";

/// The same, not by way of JSON.
inline AppUpdateActivationRecord updateRecord() {
    const Instant created{std::chrono::seconds(1777212202)};
    return {.schemaVersion = 1,
            .updateID = Uuid::parse("0e984725-c51c-4bf4-9960-e1c80e27aba0").value(),
            .sourceVersion = "1.4.0",
            .sourceBuild = "212",
            .targetVersion = "1.5.0",
            .targetBuild = "230",
            .channel = "stable",
            .assistantWasInstalled = true,
            .assistantWasRunning = true,
            .assistantPIDBeforeUpdate = 4711,
            .phase = AppUpdateActivationPhase::sparkleHandoff,
            .createdAt = created,
            .updatedAt = created + std::chrono::seconds(98),
            .recoveryAttempts = 2,
            .lastErrorClass = "assistant_stop_timeout"};
}

} // namespace vesk::test
