#include "VeskShellCore/MailScripts.hpp"

#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <string_view>

namespace vesk::VeskMailOperations {
namespace {

// The bodies below are the programs that run inside the mail program. Their first handler turns what could break a row
// or a line into blanks, so that a row is one line of fields with the unit separator between them.

constexpr std::string_view handlers = R"applescript(on sanitizeText(valueText)
  set oldDelimiters to AppleScript's text item delimiters
  set AppleScript's text item delimiters to (ASCII character 31)
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to linefeed
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to return
  set valueParts to text items of valueText
  set AppleScript's text item delimiters to " "
  set valueText to valueParts as text
  set AppleScript's text item delimiters to oldDelimiters
  return valueText
end sanitizeText

on limitedText(valueText, maxCharacters)
  set cleanedText to my sanitizeText(valueText)
  if (length of cleanedText) > maxCharacters then
    return text 1 thru maxCharacters of cleanedText
  end if
  return cleanedText
end limitedText

)applescript";

constexpr std::string_view listBody = R"applescript(set fieldSeparator to ASCII character 31
set collectedRows to {}

with timeout of 12 seconds
tell application "Mail"
  set candidateMessages to messages of inbox
  repeat with candidateMessage in candidateMessages
    if (count of collectedRows) is greater than or equal to limitValue then exit repeat

    set messageIsRead to false
    set messageIsFlagged to false
    try
      set messageIsRead to read status of candidateMessage
    end try
    try
      set messageIsFlagged to flagged status of candidateMessage
    end try

    set shouldInclude to true
    if targetView is "unread" and messageIsRead then set shouldInclude to false
    if targetView is "flagged" and not messageIsFlagged then set shouldInclude to false

    if shouldInclude then
      set sourceIdValue to ""
      set messageIdValue to ""
      set mailboxValue to ""
      set accountValue to ""
      set senderValue to ""
      set subjectValue to ""
      set receivedAtValue to ""
      set previewValue to ""

      try
        set sourceIdValue to id of candidateMessage as text
      end try
      try
        set messageIdValue to message id of candidateMessage as text
      end try
      try
        set mailboxValue to name of mailbox of candidateMessage as text
      end try
      try
        set accountValue to name of account of mailbox of candidateMessage as text
      end try
      try
        set senderValue to sender of candidateMessage as text
      end try
      try
        set subjectValue to subject of candidateMessage as text
      end try
      try
        set receivedAtValue to date received of candidateMessage as text
      end try
      try
        set previewValue to my limitedText(content of candidateMessage as text, 600)
      end try

      set rowValue to my sanitizeText(sourceIdValue) & fieldSeparator & my sanitizeText(messageIdValue) & fieldSeparator & my sanitizeText(mailboxValue) & fieldSeparator & my sanitizeText(accountValue) & fieldSeparator & my sanitizeText(senderValue) & fieldSeparator & my sanitizeText(subjectValue) & fieldSeparator & my sanitizeText(receivedAtValue) & fieldSeparator & (messageIsRead as text) & fieldSeparator & (messageIsFlagged as text) & fieldSeparator & previewValue
      set end of collectedRows to rowValue
    end if
  end repeat
end tell
end timeout

return collectedRows)applescript";

constexpr std::string_view followupBody = R"applescript(set fieldSeparator to ASCII character 31
set collectedRows to {}
set seenMessageKeys to {}

with timeout of 12 seconds
tell application "Mail"
  if hasSubjectFilter or hasSenderFilter then
    set candidateMessages to {}
    repeat with accountItem in accounts
      repeat with mailboxItem in mailboxes of accountItem
        try
          if hasSubjectFilter then
            set mailboxMessages to messages of mailboxItem whose subject contains subjectFilter
          else
            set mailboxMessages to messages of mailboxItem whose sender contains senderFilter
          end if
          set candidateMessages to candidateMessages & mailboxMessages
        end try
      end repeat
    end repeat
  else
    set candidateMessages to messages of inbox
  end if
  repeat with candidateMessage in candidateMessages
    if (count of collectedRows) is greater than or equal to limitValue then exit repeat

    set shouldInclude to true
    try
      if hasCutoff and ((date received of candidateMessage) is less than or equal to cutoffDate) then set shouldInclude to false
    on error
      if hasCutoff then set shouldInclude to false
    end try

    if shouldInclude then
      set messageIsRead to false
      set messageIsFlagged to false
      set sourceIdValue to ""
      set messageIdValue to ""
      set mailboxValue to ""
      set accountValue to ""
      set senderValue to ""
      set subjectValue to ""
      set receivedAtValue to ""
      set previewValue to ""

      try
        set messageIsRead to read status of candidateMessage
      end try
      try
        set messageIsFlagged to flagged status of candidateMessage
      end try
      try
        set sourceIdValue to id of candidateMessage as text
      end try
      try
        set messageIdValue to message id of candidateMessage as text
      end try
      set shouldStore to true
      set dedupeKey to messageIdValue
      if dedupeKey is "" then set dedupeKey to sourceIdValue
      if dedupeKey is not "" then
        if seenMessageKeys contains dedupeKey then
          set shouldStore to false
        else
          set end of seenMessageKeys to dedupeKey
        end if
      end if
      try
        set mailboxValue to name of mailbox of candidateMessage as text
      end try
      try
        set accountValue to name of account of mailbox of candidateMessage as text
      end try
      try
        set senderValue to sender of candidateMessage as text
      end try
      try
        set subjectValue to subject of candidateMessage as text
      end try
      try
        set receivedAtValue to date received of candidateMessage as text
      end try
      try
        set previewValue to my limitedText(content of candidateMessage as text, 600)
      end try

      if shouldStore then
        set rowValue to my sanitizeText(sourceIdValue) & fieldSeparator & my sanitizeText(messageIdValue) & fieldSeparator & my sanitizeText(mailboxValue) & fieldSeparator & my sanitizeText(accountValue) & fieldSeparator & my sanitizeText(senderValue) & fieldSeparator & my sanitizeText(subjectValue) & fieldSeparator & my sanitizeText(receivedAtValue) & fieldSeparator & (messageIsRead as text) & fieldSeparator & (messageIsFlagged as text) & fieldSeparator & previewValue
        set end of collectedRows to rowValue
      end if
    end if
  end repeat
end tell
end timeout

return collectedRows)applescript";

constexpr std::string_view probeText = R"applescript(with timeout of 8 seconds
  tell application "Mail"
    set _veskMailInboxCount to count of messages of inbox
  end tell
end timeout
return "ok")applescript";

constexpr std::chrono::seconds scanLimit{12}, probeLimit{8};

const char* flag(bool value) { return value ? "true" : "false"; }

std::string line(std::string_view variable, std::string_view value) {
    return "set " + std::string(variable) + " to " + std::string(value) + "\n";
}

MailView viewOf(CapabilityMailView view) {
    switch (view) {
    case CapabilityMailView::unread: return MailView::unread;
    case CapabilityMailView::flagged: return MailView::flagged;
    case CapabilityMailView::recent: return MailView::recent;
    }
    return {};
}

std::string parameterLines(const MailFollowupQuestion& question) {
    return line("hasCutoff", flag(question.cutoff.has_value())) + line("limitValue", std::to_string(question.limit))
           + line("subjectFilter", appleScriptString(question.subjectFilter))
           + line("senderFilter", appleScriptString(question.senderFilter))
           + line("hasSubjectFilter", flag(!question.subjectFilter.empty()))
           + line("hasSenderFilter", flag(!question.senderFilter.empty()));
}

} // namespace

std::string cleanedText(std::string_view text) {
    std::string cleaned(trimmed(text));
    std::ranges::replace(cleaned, fieldSeparator, ' ');
    return cleaned;
}

std::string appleScriptString(std::string_view text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '\\' || c == '"') quoted += '\\';
        quoted += c;
    }
    return quoted + '"';
}

std::string appleScriptCutoffDate(const std::string& name, const std::optional<Instant>& date,
                                  const LocalCalendar& calendar) {
    std::string statements = "set " + name + " to current date";
    if (!date) return statements;
    const WallTime wall = calendar.wallTime(*date);
    const WallDay day = std::chrono::floor<std::chrono::days>(wall);
    const std::chrono::year_month_day parts(day);
    const auto set = [&](const char* property, const std::string& value) {
        statements += std::string("\nset ") + property + " of " + name + " to " + value;
    };
    set("year", std::to_string(static_cast<int>(parts.year())));
    set("month", std::to_string(static_cast<unsigned>(parts.month())));
    set("day", std::to_string(static_cast<unsigned>(parts.day())));
    set("time", std::to_string((wall - day).count()));
    return statements;
}

MailScript mailListScript(CapabilityMailView view, std::int64_t limit) {
    MailScript script;
    script.text = std::string(handlers) + line("targetView", appleScriptString(rawValue(view)))
                  + line("limitValue", std::to_string(limit)) + std::string(listBody);
    script.timeLimit = scanLimit;
    script.question = MailListQuestion{viewOf(view), limit};
    return script;
}

MailScript mailFollowupScript(const std::optional<Instant>& sinceAt, std::int64_t limit, std::string_view subjectFilter,
                              std::string_view senderFilter, const LocalCalendar& calendar) {
    MailFollowupQuestion question;
    if (sinceAt) question.cutoff = std::chrono::floor<std::chrono::seconds>(*sinceAt);
    question.subjectFilter = cleanedText(subjectFilter);
    question.senderFilter = cleanedText(senderFilter);
    question.limit = limit;
    MailScript script;
    script.text = std::string(handlers) + appleScriptCutoffDate("cutoffDate", sinceAt, calendar) + "\n"
                  + parameterLines(question) + std::string(followupBody);
    script.timeLimit = scanLimit;
    script.question = std::move(question);
    return script;
}

MailScript mailProbeScript() { return {std::string(probeText), probeLimit, MailProbeQuestion{}}; }

} // namespace vesk::VeskMailOperations
