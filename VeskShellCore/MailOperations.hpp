#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskPlatform/ScriptDescriptor.hpp"
#include "VeskShellCore/MailModels.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// Bounded, read-only looks into the user's mail, through scripts for the mail program. Each call runs one script and
/// waits for it; MailError where it fails. Access is settled before, by the gate.
namespace vesk::VeskMailOperations {

/// Messages of the inbox in the mail program's order. `limit` is brought into 1 to 50.
CapabilityMailListResponse listMessages(Platform& platform, CapabilityMailView view, std::int64_t limit,
                                        const Bundle& bundle);

/// Whether a message received after `sinceAt` answers the given one. A `sinceAt` that is no time (RFC 3339) means any
/// time. `limit` is brought into 1 to 200 and counts the candidates.
CapabilityMailFollowupCheckResponse checkFollowup(Platform& platform, const std::optional<std::string>& sourceId,
                                                  const std::optional<std::string>& messageId,
                                                  const std::optional<std::string>& sender,
                                                  const std::optional<std::string>& subject,
                                                  const std::optional<std::string>& sinceAt, std::int64_t limit,
                                                  const Bundle& bundle);

/// Asks the mail program something harmless, to see whether it lets itself be asked. Throws MailError.
void probeAccess(Platform& platform);

/// The texts of a list, without items that are none; of any other value its text, where it is one and not empty.
std::vector<std::string> asStringList(const ScriptDescriptor& descriptor);

} // namespace vesk::VeskMailOperations
