#pragma once

#include "VeskPlatform/MailScriptRunner.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/LocalCalendar.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

// The scripts that the mail program is asked with. What the user gave is spliced into their texts, escaped.

namespace vesk::VeskMailOperations {

/// Divides the fields of a row.
inline constexpr char fieldSeparator = '\x1f';

/// `text` trimmed, then each field separator in it as a blank.
std::string cleanedText(std::string_view text);

/// `text` as a string of the script's language, in quotation marks.
std::string appleScriptString(std::string_view text);

/// Statements that set the variable `name` to `date`, to the second and in the calendar's time, since dates of the
/// script's language have no zone; without a date to the present. No line end after the last.
std::string appleScriptCutoffDate(const std::string& name, const std::optional<Instant>& date,
                                  const LocalCalendar& calendar);

MailScript mailListScript(CapabilityMailView view, std::int64_t limit);

/// The filters are cleaned; an empty one is none.
MailScript mailFollowupScript(const std::optional<Instant>& sinceAt, std::int64_t limit, std::string_view subjectFilter,
                              std::string_view senderFilter, const LocalCalendar& calendar);

/// Counts the inbox, to see whether the mail program answers at all.
MailScript mailProbeScript();

} // namespace vesk::VeskMailOperations
