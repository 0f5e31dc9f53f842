#pragma once

#include "VeskPlatform/MailScriptRunner.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <set>

namespace vesk::test {

struct FakeMailMessage {
    std::string sourceId, messageId, mailbox = "INBOX", account = "Home", sender, subject, receivedAt;
    std::optional<Instant> received;
    bool read = false, flagged = false;
    std::string content;
};

/// A mail program with messages in memory that answers questions in their order; the messages of the mailbox "INBOX"
/// are the inbox. Scripts are recorded. With `outcome` set, every script ends with it instead.
class FakeMail : public MailScriptRunner {
public:
    std::vector<FakeMailMessage> messages;
    std::optional<MailScriptOutcome> outcome;
    std::vector<MailScript> scripts;

    MailScriptOutcome run(const MailScript& script) override {
        scripts.push_back(script);
        if (outcome) return *outcome;
        return std::visit([&](const auto& question) { return answer(question); }, script.question);
    }

    static std::string row(const std::array<std::string, 10>& fields) {
        std::string result;
        for (const std::string& field : fields) result += (&field == fields.data() ? "" : "\x1f") + field;
        return result;
    }

private:
    template <class Wanted> ScriptDescriptor rows(std::int64_t limit, Wanted wanted) const {
        ScriptDescriptor::List list;
        for (const FakeMailMessage& message : messages)
            if (static_cast<std::int64_t>(list.size()) < limit && wanted(message)) list.emplace_back(rowOf(message));
        return {list};
    }

    ScriptDescriptor answer(const MailListQuestion& question) const {
        return rows(question.limit, [&](const FakeMailMessage& message) {
            if (question.view == MailView::unread && message.read) return false;
            return message.mailbox == "INBOX" && (question.view != MailView::flagged || message.flagged);
        });
    }
    ScriptDescriptor answer(const MailFollowupQuestion& question) const {
        std::set<std::string> seen;
        return rows(question.limit, [&](const FakeMailMessage& message) {
            if (!isCandidate(question, message)) return false;
            if (question.cutoff && !(message.received > question.cutoff)) return false;
            const std::string& key = message.messageId.empty() ? message.sourceId : message.messageId;
            return key.empty() || seen.insert(key).second;
        });
    }
    static ScriptDescriptor answer(const MailProbeQuestion&) { return {std::optional<std::string>("ok")}; }

    static bool isCandidate(const MailFollowupQuestion& question, const FakeMailMessage& message) {
        const auto contains = [](const std::string& text, const std::string& part) {
            return lowercased(text).find(lowercased(part)) != std::string::npos;
        };
        if (!question.subjectFilter.empty()) return contains(message.subject, question.subjectFilter);
        if (!question.senderFilter.empty()) return contains(message.sender, question.senderFilter);
        return message.mailbox == "INBOX";
    }

    static std::string oneLine(std::string text) {
        std::ranges::replace_if(
            text, [](char c) { return c == '\x1f' || c == '\n' || c == '\r'; }, ' ');
        return text;
    }
    static std::string rowOf(const FakeMailMessage& m) {
        const auto flag = [](bool value) -> std::string { return value ? "true" : "false"; };
        return row({oneLine(m.sourceId), oneLine(m.messageId), oneLine(m.mailbox), oneLine(m.account),
                    oneLine(m.sender), oneLine(m.subject), oneLine(m.receivedAt), flag(m.read), flag(m.flagged),
                    oneLine(m.content).substr(0, 600)});
    }
};

} // namespace vesk::test
