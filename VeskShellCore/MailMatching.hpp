#pragma once

#include "VeskShellCore/MailModels.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk::VeskMailOperations {

/// The messages of the rows that a mail script returned. Rows of fewer than ten fields and rows without a source id are
/// left out, fields beyond the tenth are ignored.
std::vector<CapabilityMailMessage> parseMessageRows(const std::vector<std::string>& rows);

/// A subject as it is compared: in lower case, without reply markers in front, runs of white space as one blank.
std::string normalizeSubject(const std::optional<std::string>& subject);

/// A sender as it is compared: in lower case, and only the mailbox where one stands in angle brackets.
std::string normalizeAddress(const std::optional<std::string>& address);

/// Those of `messages` that answer the message of that source id and message id (which is never its own answer): by
/// subject where one is given, else by sender, where a part of either is enough.
std::vector<CapabilityMailMessage> matchFollowupMessages(const std::vector<CapabilityMailMessage>& messages,
                                                         const std::optional<std::string>& sourceId,
                                                         const std::optional<std::string>& messageId,
                                                         const std::optional<std::string>& sender,
                                                         const std::optional<std::string>& subject);

/// `text` cleaned, none where nothing is left.
std::optional<std::string> cleanedOrAbsent(const std::optional<std::string>& text);

} // namespace vesk::VeskMailOperations
