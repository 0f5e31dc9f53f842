#include "VeskShellCore/TelegramBootstrapExtraction.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using Extraction = TelegramBootstrapExtraction;

const std::optional<std::string> absent;

std::optional<Extraction> parse(const std::string& text) { return Extraction::parse(text); }

Extraction found(const std::string& text) { return parse(text).value_or(Extraction{}); }

std::string jsonLine(const std::string& telegram) { return "Packaged setup JSON: {\"telegram\":" + telegram + "}\n"; }

const std::string lines = "Done.\nTelegram account: @dana_k\nUser ID: 4711\nChat ID: -100200\n";
const Extraction fromLines{"dana_k", "4711", {"-100200"}};

TEST(TelegramBootstrap, NothingComesOfNothing) {
    for (const char* text : {"", " \n\t ", "Hello", "User ID: unknown", "User ID:"})
        EXPECT_EQ(parse(text), std::nullopt) << text;
}

TEST(TelegramBootstrap, ReadsTheLinesForPeople) {
    EXPECT_EQ(parse(lines), fromLines);
    EXPECT_EQ(parse("\n  " + lines + "\n\n"), fromLines);
    EXPECT_EQ(found("User ID: 5").allowedUsername, absent);
}

TEST(TelegramBootstrap, ReadsTheLineForMachinesFirst) {
    const std::string line =
        jsonLine(R"({"allowed_username":"eve","allowed_user_id":"9","allowed_chat_ids":["-1","-2"]})");
    EXPECT_EQ(parse(lines + line), (Extraction{"eve", "9", {"-1", "-2"}}));
    EXPECT_EQ(parse(jsonLine(R"({"allowed_chat_ids":["-1"]})") + lines), (Extraction{{}, {}, {"-1"}}));
}

TEST(TelegramBootstrap, ALineForMachinesThatSaysNothingIsPassedOver) {
    const char* const empty[] = {
        R"({"allowed_username":"unknown","allowed_user_id":" unknown ","allowed_chat_ids":["unknown"]})",
        R"({})",
        R"("dana")",
        R"({"allowed_user_id":9})",
        R"({"allowed_chat_ids":["1",2]})",
        R"({"allowed_username":null})",
        R"({"allowed_username":"a",})"};
    for (const char* telegram : empty) EXPECT_EQ(parse(jsonLine(telegram) + lines), fromLines) << telegram;
    EXPECT_EQ(parse("Packaged setup JSON: {broken}\n" + lines), fromLines);
    EXPECT_EQ(parse("Packaged setup JSON: [1]\n" + lines), fromLines);
}

TEST(TelegramBootstrap, AnObjectOverSeveralLinesIsNone) {
    EXPECT_EQ(parse("Packaged setup JSON: {\"telegram\":\n{\"allowed_user_id\":\"9\"}}\n" + lines), fromLines);
}

TEST(TelegramBootstrap, TheLineMustBeginWithItsWords) {
    EXPECT_EQ(parse("> Packaged setup JSON: {\"telegram\":{\"allowed_user_id\":\"9\"}}"), std::nullopt);
    EXPECT_EQ(parse("packaged setup json: {\"telegram\":{\"allowed_user_id\":\"9\"}}"), std::nullopt);
    EXPECT_EQ(found("Packaged setup JSON:\t{\"telegram\":{\"allowed_user_id\":\"9\"}}  \nmore").allowedUserID, "9");
}

TEST(TelegramBootstrap, OneAtSignIsDropped) {
    EXPECT_EQ(found(jsonLine(R"({"allowed_username":"@dana"})")).allowedUsername, "dana");
    EXPECT_EQ(found(jsonLine(R"({"allowed_username":" @@dana "})")).allowedUsername, "@dana");
    EXPECT_EQ(found("Telegram account: dana").allowedUsername, "dana");
}

TEST(TelegramBootstrap, AnAccountOfOtherCharactersIsNone) {
    for (const char* text : {"Telegram account: dana-k", "Telegram account: @@dana", "Telegram account: dana k"})
        EXPECT_EQ(parse(text), std::nullopt) << text;
}

TEST(TelegramBootstrap, ChatsAreListedOnce) {
    EXPECT_EQ(found(jsonLine(R"({"allowed_chat_ids":["-1"," -1 ","unknown","","-2"]})")).allowedChatIDs,
              (std::vector<std::string>{"-1", "-2"}));
    EXPECT_EQ(found(jsonLine(R"({"allowed_chat_ids":["@club"]})")).allowedChatIDs, std::vector<std::string>{"@club"});
}

TEST(TelegramBootstrap, OnlyTheFirstLineOfAChatCounts) {
    EXPECT_EQ(found("Chat ID: 1\nChat ID: 2\n").allowedChatIDs, std::vector<std::string>{"1"});
    EXPECT_EQ(found("Chat ID: unknown\nChat ID: 2\nUser ID: 3").allowedChatIDs, std::vector<std::string>{});
}

TEST(TelegramBootstrap, LinesMayEndAsWindowsEndsThem) {
    EXPECT_EQ(parse("Telegram account: @dana_k\r\nUser ID: 4711\r\nChat ID: -100200\r\n"), fromLines);
}

TEST(TelegramBootstrap, IsEmptyWithoutAnyOfTheThree) {
    EXPECT_TRUE(Extraction{}.isEmpty());
    EXPECT_FALSE((Extraction{"a", {}, {}}.isEmpty()));
    EXPECT_FALSE((Extraction{{}, "1", {}}.isEmpty()));
    EXPECT_FALSE((Extraction{{}, {}, {"1"}}.isEmpty()));
}

TEST(TelegramBootstrap, AHugeTextEnds) {
    std::string text;
    for (int i = 0; i < 20'000; ++i) text += "Packaged setup JSON: {{{{{{{{ }}} x\nUser ID: a b\n";
    EXPECT_EQ(parse(text), std::nullopt);
    EXPECT_EQ(parse("User ID:" + std::string(20'000, ' ') + "7"), (Extraction{{}, "7", {}}));
    EXPECT_EQ(parse("User ID:" + std::string(2'000'000, ' ') + "7"), std::nullopt); // beyond ICU's own bounds
}

} // namespace
} // namespace vesk
