// The built broker over folders of mail.

#include "tests/broker/StoreProgram.hpp"
#include "tests/support/OnThreads.hpp"

#include <atomic>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <thread>

namespace vesk {
namespace {

using test::ProgramResult;
using test::ProgramRun;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

class MailStoreProgram : public test::StoreProgram {
protected:
    MailStoreProgram() : StoreProgram("mail", "VESK_MAIL_DIR", "mail") { makeMaildir("home/INBOX"); }

    void makeMaildir(const std::string& name) const {
        for (const char* part : {"cur", "new", "tmp"}) fs::create_directories(root / name / part);
    }
    static std::string message(const std::string& subject, const std::string& id, const std::string& body = "Hello") {
        return "From: Anna Beck <anna@example.org>\nSubject: " + subject + "\nMessage-ID: <" + id
               + ">\nDate: Wed, 3 Jun 2026 12:00:00 +0000\n\n" + body + "\n";
    }
    std::string listed() const { return succeed({"mail-list", "--view", "recent", "--limit", "50"}); }
};

TEST_F(MailStoreProgram, MailIsListed) {
    write("home/INBOX/cur/1.a:2,F", message("=?utf-8?q?Gr=C3=BC=C3=9Fe?=", "1@example.org", "Hello\nyou"));
    write("home/INBOX/cur/2.a:2,S", message("Read", "2@example.org"));
    const std::string list = succeed({"mail-list", "--view", "unread"});
    for (const char* line : {"\"sourceId\" : \"1.a\"", "\"messageId\" : \"1@example.org\"", "\"mailbox\" : \"INBOX\"",
                             "\"account\" : \"home\"", "\"sender\" : \"Anna Beck <anna@example.org>\"",
                             "\"subject\" : \"Grüße\"", "\"receivedAt\" : \"Wednesday, June 3, 2026",
                             "\"read\" : false", "\"flagged\" : true", "\"preview\" : \"Hello you\""})
        EXPECT_THAT(list, HasSubstr(line));
    EXPECT_THAT(list, Not(HasSubstr("Read")));
    EXPECT_EQ(succeed({"mail-list", "--view", "unread"}), list) << "from the index";
}

TEST_F(MailStoreProgram, AReplyIsFound) {
    makeMaildir("home/Archive");
    write("home/INBOX/cur/1:2,S", message("Budget", "1@example.org"));
    write("home/Archive/cur/2:2,S", message("Re: Budget", "2@example.org"));
    const std::vector<std::string> check{"mail-check-followup", "--subject",     "Budget",
                                         "--message-id",        "1@example.org", "--since"};
    auto before = check, after = check;
    before.emplace_back("2026-06-03T11:59:59Z");
    after.emplace_back("2026-06-03T12:00:00Z");
    const std::string found = succeed(before);
    EXPECT_THAT(found, HasSubstr("\"replyFound\" : true"));
    EXPECT_THAT(found, HasSubstr("\"sourceId\" : \"2\""));
    EXPECT_THAT(found, Not(HasSubstr("\"sourceId\" : \"1\"")));
    EXPECT_THAT(succeed(after), HasSubstr("\"replyFound\" : false")) << "what came at the cutoff came before it";
}

TEST_F(MailStoreProgram, OddMailIsShownAsFarAsItGoes) {
    using namespace std::string_literals;
    fs::create_directory_symlink("..", root / "home/INBOX/loop");
    fs::create_directory_symlink(root, root / "home/root");
    write("home/INBOX/cur/1:2,", message("zero\0byte"s, "1@x", "a\0b"s));
    write("home/INBOX/cur/2:2,", "Subject: cut o");
    write("home/INBOX/cur/3:2,", "");
    write("home/INBOX/cur/4:2,", message("big", "4@x", "Begin"));
    fs::resize_file(root / "home/INBOX/cur/4:2,", std::uintmax_t{200} * 1024 * 1024);
    write("home/INBOX/tmp/5", message("under way", "5@x"));
    const std::string list = listed();
    for (const char* line : {"\"subject\" : \"zero byte\"", "\"preview\" : \"a b\"", "\"subject\" : \"cut o\"",
                             "\"sourceId\" : \"3\"", "\"preview\" : \"Begin"})
        EXPECT_THAT(list, HasSubstr(line));
    EXPECT_THAT(list, Not(HasSubstr("under way")));
}

TEST_F(MailStoreProgram, MailIsDeliveredMeanwhile) {
    constexpr int many = 300;
    std::thread delivery([&] {
        for (int i = 0; i < many; ++i) {
            const std::string name = std::to_string(i);
            write("home/INBOX/tmp/" + name, message("Number " + name, name + "@x"));
            fs::rename(root / "home/INBOX/tmp" / name, root / "home/INBOX/new" / name);
            if (i % 3 == 0) fs::rename(root / "home/INBOX/new" / name, root / "home/INBOX/cur" / (name + ":2,S"));
            if (i % 7 == 0) fs::remove(root / "home/INBOX/new" / name);
        }
    });
    for (int run = 0; run < 5; ++run) EXPECT_THAT(listed(), HasSubstr("\"view\" : \"recent\""));
    delivery.join();
    const std::string found = succeed({"mail-check-followup", "--subject", "Number 299"});
    EXPECT_THAT(found, HasSubstr("\"sourceId\" : \"299\""));
}

TEST_F(MailStoreProgram, ManyMayAskAtOnce) {
    for (int i = 0; i < 2000; ++i)
        write("home/INBOX/new/" + std::to_string(i), message("Number " + std::to_string(i), std::to_string(i) + "@x"));
    test::onThreads(3, [&](std::size_t) {
        const auto found = succeed({"mail-check-followup", "--subject", "Number 1999"});
        EXPECT_THAT(found, HasSubstr("\"sourceId\" : \"1999\""));
    });
}

TEST_F(MailStoreProgram, WithoutConsentNothingIsShown) {
    write("home/INBOX/cur/1:2,", message("Secret", "1@x"));
    program.environment["VESK_STATE_DIR"] = (program.folder() / "fresh").string();
    const ProgramResult result = program.run({"mail-list", "--view", "recent"});
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.output, Not(HasSubstr("Secret")));
    EXPECT_FALSE(fs::exists(program.folder() / "cache/mail.sqlite"));
}

TEST_F(MailStoreProgram, AMissingModuleNamesItsPackage) {
    write("home/INBOX/cur/1:2,", message("Hello", "1@x"));
    const fs::path alone = program.folder() / "alone/bin/VeskCapabilityBroker";
    fs::create_directories(alone.parent_path());
    fs::copy(VESK_BINARY_DIR "/bin/VeskCapabilityBroker", alone);
    ProgramRun copy(alone);
    copy.environment = program.environment;
    const ProgramResult result = copy.run({"mail-list", "--view", "recent"});
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("install the package libgmime-3.0-0"));
}

} // namespace
} // namespace vesk
