#include "tests/VeskPlatform/Linux/Maildir/MailWorld.hpp"
#include "tests/contracts/MailScriptRunnerContract.hpp"

#include <ctime>
#include <optional>

namespace vesk::test {
namespace {

struct FakeMailWorld {
    FakeMail mail;
    MailScriptRunner& runner() { return mail; }
    void deliver(const FakeMailMessage& message) { mail.messages.insert(mail.messages.begin(), message); }
};

struct MaildirWorld {
    MailFolders mail;
    std::optional<MaildirScriptRunner> made;
    MailScriptRunner& runner() { return made ? *made : made.emplace(mail.options); }

    void deliver(const FakeMailMessage& message) const {
        const std::string flags = std::string(message.flagged ? "F" : "") + (message.read ? "S" : "");
        const std::string file = "home/" + message.mailbox + "/cur/" + message.sourceId + ":2," + flags;
        std::string bytes =
            "From: " + message.sender + "\nSubject: " + message.subject + "\nMessage-ID: <" + message.messageId + ">\n";
        if (message.received) bytes += "Date: " + internetDate(*message.received) + "\n";
        mail.write(file, bytes + "\n" + message.content);
    }

private:
    static std::string internetDate(Instant instant) {
        const std::time_t seconds = std::chrono::floor<std::chrono::seconds>(instant).time_since_epoch().count();
        std::tm parts{};
        char text[64];
        return {text, std::strftime(text, sizeof text, "%a, %d %b %Y %H:%M:%S +0000", ::gmtime_r(&seconds, &parts))};
    }
};

using Worlds = ::testing::Types<FakeMailWorld, MaildirWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, MailScriptRunnerContract, Worlds);

} // namespace
} // namespace vesk::test
