#include "VeskShellCore/MailMatching.hpp"

#include "VeskShellCore/MailScripts.hpp"
#include "VeskSupport/RegularExpression.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace vesk::VeskMailOperations {
namespace {

constexpr std::size_t fieldCount = 10;

/// "Re", "Fw" and their like in English, German and Swedish.
constexpr std::array<std::string_view, 5> replyMarkers{"re:", "fw:", "fwd:", "aw:", "sv:"};

std::string comparable(const std::optional<std::string>& text) {
    return text ? lowercased(cleanedText(*text)) : std::string();
}

/// One pass over the markers; whether it found any.
bool stripReplyMarkers(std::string_view& subject) {
    bool found = false;
    for (const std::string_view marker : replyMarkers)
        if (subject.starts_with(marker)) {
            subject = trimmed(subject.substr(marker.size()));
            found = true;
        }
    return found;
}

bool isTrue(const std::string& field) { return lowercased(cleanedText(field)) == "true"; }

std::optional<CapabilityMailMessage> parseMessageRow(const std::string& row) {
    const std::vector<std::string> fields = split(row, fieldSeparator);
    if (fields.size() < fieldCount) return std::nullopt;
    const auto text = [&](std::size_t field) { return cleanedOrAbsent(fields[field]); };
    auto sourceId = text(0);
    if (!sourceId) return std::nullopt;
    return CapabilityMailMessage{.sourceId = std::move(*sourceId),
                                 .messageId = text(1),
                                 .mailbox = text(2),
                                 .account = text(3),
                                 .sender = text(4),
                                 .subject = text(5),
                                 .receivedAt = text(6),
                                 .read = isTrue(fields[7]),
                                 .flagged = isTrue(fields[8]),
                                 .preview = text(9)};
}

bool eitherContainsTheOther(const std::string& a, const std::string& b) {
    return a.find(b) != std::string::npos || b.find(a) != std::string::npos;
}

/// What the follow-up is compared with; empty texts and absent ones match nothing.
struct Followed {
    std::optional<std::string> sourceId, messageId;
    std::string sender, subject;

    bool isSameMessage(const CapabilityMailMessage& message) const {
        return sourceId == message.sourceId || (messageId && messageId == message.messageId);
    }
    bool isAnsweredBy(const CapabilityMailMessage& message) const {
        if (isSameMessage(message)) return false;
        if (!subject.empty()) return normalizeSubject(message.subject) == subject;
        if (sender.empty()) return false;
        const std::string other = normalizeAddress(message.sender);
        return !other.empty() && eitherContainsTheOther(sender, other);
    }
};

} // namespace

std::optional<std::string> cleanedOrAbsent(const std::optional<std::string>& text) {
    std::string cleaned = text ? cleanedText(*text) : std::string();
    return cleaned.empty() ? std::nullopt : std::optional(std::move(cleaned));
}

std::vector<CapabilityMailMessage> parseMessageRows(const std::vector<std::string>& rows) {
    std::vector<CapabilityMailMessage> messages;
    for (const std::string& row : rows)
        if (auto message = parseMessageRow(row)) messages.push_back(std::move(*message));
    return messages;
}

std::string normalizeSubject(const std::optional<std::string>& subject) {
    const std::string whole = comparable(subject);
    std::string_view rest = whole;
    while (stripReplyMarkers(rest)) {
    }
    return replacingMatches(rest, "\\s+", LetterCase::matters, " ");
}

std::string normalizeAddress(const std::optional<std::string>& address) {
    std::string whole = comparable(address);
    const std::size_t opening = whole.rfind('<'), closing = whole.rfind('>');
    if (opening == std::string::npos || closing == std::string::npos || closing < opening) return whole;
    return std::string(trimmed(std::string_view(whole).substr(opening + 1, closing - opening - 1)));
}

std::vector<CapabilityMailMessage> matchFollowupMessages(const std::vector<CapabilityMailMessage>& messages,
                                                         const std::optional<std::string>& sourceId,
                                                         const std::optional<std::string>& messageId,
                                                         const std::optional<std::string>& sender,
                                                         const std::optional<std::string>& subject) {
    const Followed followed{cleanedOrAbsent(sourceId), cleanedOrAbsent(messageId), normalizeAddress(sender),
                            normalizeSubject(subject)};
    std::vector<CapabilityMailMessage> matched;
    std::ranges::copy_if(messages, std::back_inserter(matched),
                         [&](const CapabilityMailMessage& message) { return followed.isAnsweredBy(message); });
    return matched;
}

} // namespace vesk::VeskMailOperations
