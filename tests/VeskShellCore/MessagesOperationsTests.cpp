#include "VeskShellCore/MessagesOperations.hpp"

#include "VeskShellCore/MessagesError.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace vesk::test {
namespace {

using namespace VeskMessagesOperations;
using Strings = std::vector<std::string>;

std::string golden(const std::string& name) {
    std::ifstream file(VESK_SOURCE_DIR "/tests/data/scripts/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class MessagesOperations : public ::testing::Test {
protected:
    FakePlatform platform;
    FakeMessages& messages = platform.fakeMessages;

    CapabilityMessagesListResponse listed(std::int64_t limit = 20) {
        return listRecentChats(platform, limit, platform.bundle);
    }
    CapabilityMessagesSendResponse sent(const std::string& phone, const std::string& message = "hello") {
        return sendMessage(platform, phone, message, platform.bundle);
    }
    Strings idsOf(const std::string& output) {
        messages.result = ScriptRunResult{0, output, ""};
        Strings ids;
        for (const auto& chat : listed().chats) ids.push_back(chat.id);
        return ids;
    }
    /// "CODE TEXT" of the MessagesError that `work` throws.
    template <class Work> static std::string failureOf(Work work) {
        try {
            work();
        } catch (const MessagesError& error) {
            EXPECT_EQ(error.domain(), "VeskMessagesOperations");
            return std::to_string(error.code()) + " " + error.description();
        }
        return "no failure";
    }
    std::string failureOf(ScriptRunResult result) {
        messages.result = std::move(result);
        return failureOf([&] { listed(); });
    }
};

TEST_F(MessagesOperations, ChatsAreListedInTheirOrder) {
    messages.chats = {"chat-b", "chat-a", "chat-c"};
    const auto response = listed(2);
    EXPECT_EQ(response.chats, (std::vector<CapabilityMessagesChat>{{"chat-b"}, {"chat-a"}}));
    EXPECT_EQ(response.limit, 2);
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.detail, "Listed recent Messages chats.");
}

TEST_F(MessagesOperations, NoChatsAreToldToo) {
    EXPECT_EQ(listed().detail, "No recent Messages chats were returned.");
    EXPECT_TRUE(listed().chats.empty());
}

TEST_F(MessagesOperations, TheLimitIsBroughtIntoItsRange) {
    const std::pair<std::int64_t, std::int64_t> limits[] = {{0, 1}, {-5, 1}, {1, 1}, {50, 50}, {51, 50}, {999, 50}};
    for (const auto& [given, kept] : limits) {
        EXPECT_EQ(listed(given).limit, kept);
        EXPECT_EQ(messages.scripts.back().arguments.back(), std::to_string(kept));
        EXPECT_EQ(std::get<MessagesListQuestion>(messages.scripts.back().question).limit, kept);
    }
}

TEST_F(MessagesOperations, LinesOfTheOutputAreTrimmedAndBlankOnesLeftOut) {
    EXPECT_EQ(idsOf("  a \n\n \t\nb\r\nc\u2028d\u0085"), (Strings{"a", "b", "c", "d"}));
    EXPECT_EQ(idsOf("one two"), Strings{"one two"});
    EXPECT_EQ(idsOf("\n \n"), Strings{});
    EXPECT_EQ(idsOf("a\n\xff\n"), Strings{}) << "an output that is no text counts as empty";
    EXPECT_EQ(idsOf("a\uFFFD"), Strings{"a\uFFFD"});
}

TEST_F(MessagesOperations, ScriptsArePassedToTheByteWithTheirArguments) {
    listed(7);
    sent("+49 1", " say \"hi\" \\ \n");
    ASSERT_EQ(messages.scripts.size(), 2U);
    EXPECT_EQ(messages.scripts[0], (MessagesScript{"/usr/bin/osascript",
                                                   {"-e", golden("messages_list.applescript"), "--", "7"},
                                                   MessagesListQuestion{7}}));
    EXPECT_EQ(messages.scripts[1],
              (MessagesScript{"/usr/bin/osascript",
                              {"-e", golden("messages_send.applescript"), "--", "+491", "say \"hi\" \\"},
                              MessagesSendQuestion{"+491", "say \"hi\" \\"}}));
}

TEST_F(MessagesOperations, FailuresOfTheScriptHaveItsTextAndStatus) {
    EXPECT_EQ(failureOf({1, "out", " execution error: Not allowed. (-1743)\n"}),
              "1 execution error: Not allowed. (-1743)");
    EXPECT_EQ(failureOf({7, " out \n", ""}), "7 out");
    EXPECT_EQ(failureOf({2, "", ""}), "2 Messages AppleScript failed.");
    EXPECT_EQ(failureOf({2, "out", " \n"}), "2 Messages AppleScript failed.") << "blank errors are not empty ones";
    EXPECT_EQ(failureOf({2, "out", "\xff"}), "2 out") << "errors that are no text count as empty";
    messages.result = ScriptRunResult{3, "", "no"};
    EXPECT_EQ(failureOf([&] { sent("1"); }), "3 no");
}

TEST_F(MessagesOperations, ARunnerThatCannotStartPassesItsErrorOn) {
    messages.startFailure = ErrorRecord("Runner", 2, "Not there.");
    try {
        listed();
        FAIL() << "no failure";
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.domain(), "Runner");
        EXPECT_EQ(error.code(), 2);
    }
}

TEST_F(MessagesOperations, AMessageIsHandedOver) {
    const auto response = sent("+49 (176) 123-45", "  hello there\n");
    EXPECT_EQ(messages.sent, (std::vector<MessagesSendQuestion>{{"+4917612345", "hello there"}}));
    EXPECT_EQ(response.phone, "+4917612345");
    EXPECT_EQ(response.messageLength, 11);
    EXPECT_EQ(response.brokerPath, "Vesk.app");
    EXPECT_EQ(response.bundlePath, "/Applications/Vesk.app");
    EXPECT_EQ(response.detail, "Sent the message through macOS Messages.");
}

TEST_F(MessagesOperations, OnlyBlanksHyphensAndParenthesesLeaveAPhone) {
    const std::pair<const char*, const char*> cases[] = {
        {"+49 (176) 123-45", "+4917612345"},
        {" anna@example.org ", "anna@example.org"},
        {"a-b@example.org", "ab@example.org"},
        {"0176/123.45", "0176/123.45"},
        {"1\t2", "1\t2"},
        {"\u00a012\u00a034", "12\u00a034"},
    };
    for (const auto& [given, kept] : cases) EXPECT_EQ(sent(given).phone, kept) << given;
}

TEST_F(MessagesOperations, WhatIsMissingIsRefusedBeforeAnyScript) {
    const std::string noPhone = "400 Phone number is required.", noText = "400 Message text is required.";
    for (const char* phone : {"", " ", "( ) - ", "\n-"}) {
        EXPECT_EQ(failureOf([&] { sent(phone); }), noPhone) << phone;
        EXPECT_EQ(failureOf([&] { sent(phone, " "); }), noPhone) << "the phone is looked at first";
    }
    for (const char* text : {"", " \n"}) EXPECT_EQ(failureOf([&] { sent("1", text); }), noText);
    EXPECT_TRUE(messages.scripts.empty());
}

TEST_F(MessagesOperations, TheLengthCountsCharacters) {
    EXPECT_EQ(sent("1", " \U0001F468\u200D\U0001F469\u200D\U0001F467 e\u0301 ").messageLength, 3);
}

} // namespace
} // namespace vesk::test
