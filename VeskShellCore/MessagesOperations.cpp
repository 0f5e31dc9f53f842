#include "VeskShellCore/MessagesOperations.hpp"

#include "VeskPlatform/MessagesScriptRunner.hpp"
#include "VeskShellCore/BundleResponse.hpp"
#include "VeskShellCore/MessagesError.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <string_view>

namespace vesk::VeskMessagesOperations {
namespace {

constexpr std::int64_t mostListed = 50;

constexpr std::string_view listScript = R"applescript(on run argv
  set limitValue to item 1 of argv as integer
  tell application "Messages"
    set theChats to every chat
    set chatCount to count of theChats
    set output to ""
    repeat with i from 1 to chatCount
      if i > limitValue then exit repeat
      set c to item i of theChats
      set output to output & (id of c as string) & linefeed
    end repeat
    return output
  end tell
end run)applescript";

constexpr std::string_view sendScript = R"applescript(on run argv
  set targetPhone to item 1 of argv
  set messageText to item 2 of argv
  tell application "Messages"
    set theBuddy to buddy targetPhone
    send messageText to theBuddy
  end tell
end run)applescript";

/// The command line of the script runner; the arguments come to the script as they are.
template <class Question>
MessagesScript scriptFor(Question question, std::string_view text, std::vector<std::string> arguments) {
    MessagesScript script;
    script.program = "/usr/bin/osascript";
    script.arguments = {"-e", std::string(text)};
    if (!arguments.empty()) script.arguments.emplace_back("--");
    std::ranges::move(arguments, std::back_inserter(script.arguments));
    script.question = std::move(question);
    return script;
}

/// Bytes that are not UTF-8 count as no text.
std::string decoded(std::string bytes) { return repairedUtf8(bytes) == bytes ? std::move(bytes) : std::string(); }

std::string parseAppleScriptError(std::string_view text) {
    const std::string_view message = trimmed(text);
    return std::string(message.empty() ? "Messages AppleScript failed." : message);
}

std::string runAppleScript(Platform& platform, const MessagesScript& script) {
    ScriptRunResult result = platform.messagesScriptRunner().run(script);
    std::string output = decoded(std::move(result.output));
    if (result.status == 0) return output;
    const std::string errors = decoded(std::move(result.errors));
    throw MessagesError(result.status, parseAppleScriptError(errors.empty() ? output : errors));
}

std::string normalizedPhone(std::string_view phone) {
    std::string normalized(trimmed(phone));
    std::erase_if(normalized, [](char c) { return std::string_view(" -()").find(c) != std::string_view::npos; });
    return normalized;
}

std::string requiredArgument(std::string argument, const char* complaint) {
    if (argument.empty()) throw MessagesError(MessagesError::argumentInvalid, complaint);
    return argument;
}

} // namespace

CapabilityMessagesListResponse listRecentChats(Platform& platform, std::int64_t limit, const Bundle& bundle) {
    auto response = responseOf<CapabilityMessagesListResponse>(bundle);
    response.limit = std::clamp<std::int64_t>(limit, 1, mostListed);
    const MessagesScript script =
        scriptFor(MessagesListQuestion{response.limit}, listScript, {std::to_string(response.limit)});
    const std::string output = runAppleScript(platform, script);
    for (const std::string_view line : lines(output))
        if (const std::string_view id = trimmed(line); !id.empty()) response.chats.push_back({std::string(id)});
    response.detail =
        response.chats.empty() ? "No recent Messages chats were returned." : "Listed recent Messages chats.";
    return response;
}

CapabilityMessagesSendResponse sendMessage(Platform& platform, const std::string& phone, const std::string& message,
                                           const Bundle& bundle) {
    auto response = responseOf<CapabilityMessagesSendResponse>(bundle);
    response.phone = requiredArgument(normalizedPhone(phone), "Phone number is required.");
    const std::string text = requiredArgument(std::string(trimmed(message)), "Message text is required.");
    runAppleScript(platform, scriptFor(MessagesSendQuestion{response.phone, text}, sendScript, {response.phone, text}));
    response.messageLength = static_cast<std::int64_t>(characterCount(text));
    response.detail = "Sent the message through macOS Messages.";
    return response;
}

} // namespace vesk::VeskMessagesOperations
