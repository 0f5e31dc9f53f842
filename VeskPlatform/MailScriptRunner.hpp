#pragma once

#include "VeskPlatform/ScriptDescriptor.hpp"
#include "VeskSupport/Instant.hpp"

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace vesk {

enum class MailView { unread, flagged, recent };

/// The messages of the inbox that a view shows, at most `limit`.
struct MailListQuestion {
    MailView view = MailView::unread;
    std::int64_t limit = 1;

    bool operator==(const MailListQuestion&) const = default;
};

/// Messages received after `cutoff` (whole seconds), at most `limit`, each once by its message id or else its source
/// id. With a subject filter they come from every mailbox and their subject contains it; else, with a sender filter,
/// from every mailbox and their sender contains it; with neither, from the inbox. With a cutoff a message without a
/// date is left out. Empty filters are none.
struct MailFollowupQuestion {
    std::optional<Instant> cutoff;
    std::string subjectFilter;
    std::string senderFilter;
    std::int64_t limit = 1;

    bool operator==(const MailFollowupQuestion&) const = default;
};

/// Whether the inbox can be counted. The answer is "ok".
struct MailProbeQuestion {
    bool operator==(const MailProbeQuestion&) const = default;
};

using MailQuestion = std::variant<MailListQuestion, MailFollowupQuestion, MailProbeQuestion>;

/// A script for the mail program: its text where there is an engine to run it, and what the text asks where there is
/// none. `timeLimit` stands in the text too; it bounds each single request to the mail program.
struct MailScript {
    std::string text;
    std::chrono::seconds timeLimit{};
    MailQuestion question;

    bool operator==(const MailScript&) const = default;
};

/// No script could be made of the text.
struct MailScriptNotMade {
    bool operator==(const MailScriptNotMade&) const = default;
};

/// The script ended with an error; the message is the mail program's or the engine's, where there is one.
struct MailScriptFailed {
    std::optional<std::string> message;

    bool operator==(const MailScriptFailed&) const = default;
};

using MailScriptOutcome = std::variant<ScriptDescriptor, MailScriptNotMade, MailScriptFailed>;

/// Runs scripts for the mail program. Called on the main executor, one call at a time; waits for the end.
/// The answer to a list or follow-up question is a list of rows, in the mail program's order (newest first where it has
/// a choice). A row has ten fields with U+001F between them: source id, message id, mailbox, account, sender, subject,
/// date received in the words of the user's locale, "true" or "false" for read and for flagged, and the first 600
/// characters of the content. A field that cannot be read is empty; U+001F, line feeds and carriage returns in a field
/// are blanks. Exceeding the time limit fails with a message that says "timed out".
class MailScriptRunner {
public:
    virtual ~MailScriptRunner() = default;
    virtual MailScriptOutcome run(const MailScript& script) = 0;
};

} // namespace vesk
