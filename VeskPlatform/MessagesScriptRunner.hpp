#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace vesk {

/// The identifiers of the latest chats, one a line, at most `limit`.
struct MessagesListQuestion {
    std::int64_t limit = 1;

    bool operator==(const MessagesListQuestion&) const = default;
};

/// Sends a text to a phone number or an address.
struct MessagesSendQuestion {
    std::string recipient;
    std::string text;

    bool operator==(const MessagesSendQuestion&) const = default;
};

/// A script for the messaging program: the command line that runs it where there is a script runner, and what it asks
/// where there is none. What the user gave stands among the arguments and never in the text of the script.
struct MessagesScript {
    std::string program;
    std::vector<std::string> arguments;
    std::variant<MessagesListQuestion, MessagesSendQuestion> question;

    bool operator==(const MessagesScript&) const = default;
};

/// What a script runner leaves when it has ended. The outputs are bytes as they came.
struct ScriptRunResult {
    int status = 0;
    std::string output;
    std::string errors;

    bool operator==(const ScriptRunResult&) const = default;
};

/// Runs scripts for the messaging program. Called on the main executor, one call at a time; waits for the end without
/// a time limit. Throws ErrorRecord where the runner cannot be started; everything later is an exit status other than
/// zero with its message on standard error.
class MessagesScriptRunner {
public:
    virtual ~MessagesScriptRunner() = default;
    virtual ScriptRunResult run(const MessagesScript& script) = 0;
};

} // namespace vesk
