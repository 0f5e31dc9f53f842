#include "VeskShellCore/MailModels.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

CapabilityMailMessage wholeMessage() {
    return {.sourceId = "7",
            .messageId = "m@x",
            .mailbox = "INBOX",
            .account = "Home",
            .sender = "Anna",
            .subject = "Hi",
            .receivedAt = "Monday",
            .read = true,
            .flagged = false,
            .preview = "Text"};
}

TEST(MailModels, AMessageWithEverything) {
    EXPECT_EQ(writeJson(toJson(wholeMessage()), SlashStyle::plain), R"({
  "account" : "Home",
  "flagged" : false,
  "mailbox" : "INBOX",
  "messageId" : "m@x",
  "preview" : "Text",
  "read" : true,
  "receivedAt" : "Monday",
  "sender" : "Anna",
  "sourceId" : "7",
  "subject" : "Hi"
})");
}

TEST(MailModels, AMessageWithTheLeast) {
    CapabilityMailMessage message;
    message.sourceId = "7";
    EXPECT_EQ(writeJson(toJson(message)), R"({
  "flagged" : false,
  "read" : false,
  "sourceId" : "7"
})");
}

TEST(MailModels, AListResponse) {
    const CapabilityMailListResponse response{.brokerPath = "Vesk.app",
                                              .bundlePath = "/A/Vesk.app",
                                              .view = CapabilityMailView::flagged,
                                              .messages = {},
                                              .limit = 10,
                                              .detail = "D"};
    EXPECT_EQ(writeJson(toJson(response), SlashStyle::plain), R"({
  "brokerPath" : "Vesk.app",
  "bundlePath" : "/A/Vesk.app",
  "detail" : "D",
  "limit" : 10,
  "messages" : [

  ],
  "view" : "flagged"
})");
}

TEST(MailModels, AFollowupResponseWithEverything) {
    CapabilityMailMessage least;
    least.sourceId = "9";
    const CapabilityMailFollowupCheckResponse response{.brokerPath = "b",
                                                       .bundlePath = "p",
                                                       .replyFound = true,
                                                       .checkedSinceAt = "garbage",
                                                       .sourceId = "1",
                                                       .messageId = "2",
                                                       .sender = "3",
                                                       .subject = "4",
                                                       .matchedMessages = {least},
                                                       .limit = 20,
                                                       .detail = "D"};
    EXPECT_EQ(writeJson(toJson(response)), R"({
  "brokerPath" : "b",
  "bundlePath" : "p",
  "checkedSinceAt" : "garbage",
  "detail" : "D",
  "limit" : 20,
  "matchedMessages" : [
    {
      "flagged" : false,
      "read" : false,
      "sourceId" : "9"
    }
  ],
  "messageId" : "2",
  "replyFound" : true,
  "sender" : "3",
  "sourceId" : "1",
  "subject" : "4"
})");
}

TEST(MailModels, AFollowupResponseWithTheLeast) {
    EXPECT_EQ(writeJson(toJson(CapabilityMailFollowupCheckResponse{})), R"({
  "brokerPath" : "",
  "detail" : "",
  "limit" : 0,
  "matchedMessages" : [

  ],
  "replyFound" : false
})");
}

TEST(MailModels, EveryRequiredKeyIsNeeded) {
    const auto needs = [](auto record, const char* key) {
        JsonValue json = toJson(record);
        std::get<JsonValue::Object>(json.value).erase(key);
        EXPECT_THROW(fromJson<decltype(record)>(json), DecodingError) << key;
    };
    for (const char* key : {"sourceId", "read", "flagged"}) needs(wholeMessage(), key);
    for (const char* key : {"brokerPath", "view", "messages", "limit", "detail"})
        needs(CapabilityMailListResponse{}, key);
    for (const char* key : {"brokerPath", "replyFound", "matchedMessages", "limit", "detail"})
        needs(CapabilityMailFollowupCheckResponse{}, key);
    EXPECT_EQ(fromJson<CapabilityMailMessage>(toJson(wholeMessage())), wholeMessage());
}

} // namespace
} // namespace vesk
