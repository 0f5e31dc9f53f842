#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Task.hpp"

namespace vesk {

/// Asks for `kind` where the system can be asked, then reports all capabilities afresh. Never fails: a refusal shows in
/// the report. What asks only once is asked only while its state is not determined; `openSystemSettings` is the way out
/// from there.
Task<CapabilityStatusReport> requestCapability(Platform& platform, CapabilityKind kind);

/// The gate before an operation: requests `kind` and throws ErrorRecord, domain "VeskCapabilityBroker", unless the
/// report shows it granted: code 74 where the report says nothing of it, 75 where it is in another state.
Task<void> ensureCapabilityGranted(Platform& platform, CapabilityKind kind);

/// Opens the pane of the system's settings where the user decides about `kind`; nothing for a kind without one. Waits
/// for nothing, never fails.
void openSystemSettings(Platform& platform, CapabilityKind kind);

/// Prompts for the calendars. The flag is the user's answer; the time that it takes is the user's too.
Task<bool> requestEventAccess(Platform& platform);
/// The same for the to-dos.
Task<bool> requestReminderAccess(Platform& platform);

} // namespace vesk
