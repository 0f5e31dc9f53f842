#include "VeskShellCore/MailOperations.hpp"

#include "VeskPlatform/LocaleSettings.hpp"
#include "VeskPlatform/MailScriptRunner.hpp"
#include "VeskShellCore/BundleResponse.hpp"
#include "VeskShellCore/MailError.hpp"
#include "VeskShellCore/MailMatching.hpp"
#include "VeskShellCore/MailScripts.hpp"
#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <string_view>

namespace vesk::VeskMailOperations {
namespace {

constexpr std::int64_t mostListed = 50, mostCandidates = 200;
constexpr std::size_t mostMatches = 10;

std::string parseAppleScriptError(const MailScriptFailed& failure) {
    return trimmedOrAbsent(failure.message).value_or("Apple Mail Automation failed.");
}

ScriptDescriptor runAppleScript(Platform& platform, const MailScript& script) {
    MailScriptOutcome outcome = platform.mailScriptRunner().run(script);
    if (const auto* failure = std::get_if<MailScriptFailed>(&outcome))
        throw MailError(MailError::Code::scriptFailed, parseAppleScriptError(*failure));
    if (std::holds_alternative<MailScriptNotMade>(outcome))
        throw MailError(MailError::Code::scriptNotMade, "Unable to create Apple Mail script.");
    return std::get<ScriptDescriptor>(std::move(outcome));
}

std::vector<std::string> runMailListScript(Platform& platform, CapabilityMailView view, std::int64_t limit) {
    return asStringList(runAppleScript(platform, mailListScript(view, limit)));
}

std::vector<std::string> runMailInboxSinceScript(Platform& platform, const std::optional<Instant>& sinceAt,
                                                 std::int64_t limit, std::string_view subjectFilter,
                                                 std::string_view senderFilter) {
    const LocalCalendar calendar(platform.localeSettings().timeZone());
    return asStringList(
        runAppleScript(platform, mailFollowupScript(sinceAt, limit, subjectFilter, senderFilter, calendar)));
}

std::optional<Instant> parseISODate(const std::optional<std::string>& text) {
    const std::string cleaned = cleanedText(text.value_or(""));
    if (const auto precise = parseInternetDateTime(cleaned, FractionalSeconds::required)) return precise;
    return parseInternetDateTime(cleaned, FractionalSeconds::refused);
}

} // namespace

std::vector<std::string> asStringList(const ScriptDescriptor& descriptor) {
    std::vector<std::string> texts;
    if (const auto* list = std::get_if<ScriptDescriptor::List>(&descriptor.value)) {
        for (const auto& item : *list)
            if (item) texts.push_back(*item);
    } else if (const auto& text = std::get<std::optional<std::string>>(descriptor.value); text && !text->empty()) {
        texts.push_back(*text);
    }
    return texts;
}

CapabilityMailListResponse listMessages(Platform& platform, CapabilityMailView view, std::int64_t limit,
                                        const Bundle& bundle) {
    auto response = responseOf<CapabilityMailListResponse>(bundle);
    response.view = view;
    response.limit = std::clamp<std::int64_t>(limit, 1, mostListed);
    response.messages = parseMessageRows(runMailListScript(platform, view, response.limit));
    response.detail =
        response.messages.empty() ? "No Apple Mail messages matched that view." : "Listed Apple Mail messages.";
    return response;
}

CapabilityMailFollowupCheckResponse checkFollowup(Platform& platform, const std::optional<std::string>& sourceId,
                                                  const std::optional<std::string>& messageId,
                                                  const std::optional<std::string>& sender,
                                                  const std::optional<std::string>& subject,
                                                  const std::optional<std::string>& sinceAt, std::int64_t limit,
                                                  const Bundle& bundle) {
    auto response = responseOf<CapabilityMailFollowupCheckResponse>(bundle);
    response.checkedSinceAt = sinceAt;
    response.sourceId = cleanedOrAbsent(sourceId);
    response.messageId = cleanedOrAbsent(messageId);
    response.sender = cleanedOrAbsent(sender);
    response.subject = cleanedOrAbsent(subject);
    response.limit = std::clamp<std::int64_t>(limit, 1, mostCandidates);

    const auto candidates = parseMessageRows(runMailInboxSinceScript(
        platform, parseISODate(sinceAt), response.limit, normalizeSubject(subject), normalizeAddress(sender)));
    response.matchedMessages = matchFollowupMessages(candidates, sourceId, messageId, sender, subject);
    response.replyFound = !response.matchedMessages.empty();
    if (response.matchedMessages.size() > mostMatches) response.matchedMessages.resize(mostMatches);
    response.detail = response.replyFound ? "Found a matching Apple Mail reply after the follow-up checkpoint."
                                          : "No matching Apple Mail reply was found after the follow-up checkpoint.";
    return response;
}

void probeAccess(Platform& platform) { runAppleScript(platform, mailProbeScript()); }

} // namespace vesk::VeskMailOperations
