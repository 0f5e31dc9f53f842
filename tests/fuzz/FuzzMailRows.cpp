// The rows of a mail script, one a line, and what is compared of them. The first two lines are the sender and the
// subject that are looked for.

#include "VeskShellCore/MailMatching.hpp"
#include "VeskShellCore/MailScripts.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

using namespace vesk;
using namespace vesk::VeskMailOperations;

void require(bool condition) {
    if (!condition) std::abort();
}

void checkText(const std::optional<std::string>& text) {
    require(!text || (!text->empty() && text->find(fieldSeparator) == std::string::npos));
}

void checkMessage(const CapabilityMailMessage& message) {
    checkText(message.sourceId);
    for (const auto& text : {message.messageId, message.mailbox, message.account, message.sender, message.subject,
                             message.receivedAt, message.preview})
        checkText(text);
    require(normalizeSubject(message.subject).find(fieldSeparator) == std::string::npos);
    require(normalizeAddress(message.sender).find(fieldSeparator) == std::string::npos);
}

/// A literal ends at its last quotation mark and nowhere before.
void checkLiteral(const std::string& literal) {
    require(literal.size() >= 2 && literal.front() == '"' && literal.back() == '"');
    for (std::size_t i = 1; i + 1 < literal.size(); ++i) {
        require(literal[i] != '"');
        if (literal[i] == '\\') require(++i + 1 < literal.size());
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> rows = split(std::string_view(reinterpret_cast<const char*>(data), size), '\n');
    rows.resize(std::max<std::size_t>(rows.size(), 2));
    const std::string sender = rows[0], subject = rows[1];
    for (const std::string& text : {sender, subject}) checkLiteral(appleScriptString(text));
    rows.erase(rows.begin(), rows.begin() + 2);

    const auto messages = parseMessageRows(rows);
    require(messages.size() <= rows.size());
    for (const CapabilityMailMessage& message : messages) checkMessage(message);
    require(matchFollowupMessages(messages, {}, {}, sender, subject).size() <= messages.size());
    // Without filters nothing matches, and nothing is a reply to itself.
    require(matchFollowupMessages(messages, {}, {}, {}, {}).empty());
    for (const CapabilityMailMessage& message : messages)
        for (const auto& reply : matchFollowupMessages(messages, message.sourceId, {}, message.sender, message.subject))
            require(reply.sourceId != message.sourceId);
    return 0;
}
