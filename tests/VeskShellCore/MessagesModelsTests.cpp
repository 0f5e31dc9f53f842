#include "VeskShellCore/MessagesModels.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(MessagesModels, AListResponse) {
    const CapabilityMessagesListResponse response{
        .brokerPath = "b", .bundlePath = {}, .chats = {{"chat-1"}}, .limit = 20, .detail = "D"};
    const std::string text = R"({
  "brokerPath" : "b",
  "chats" : [
    {
      "id" : "chat-1"
    }
  ],
  "detail" : "D",
  "limit" : 20
})";
    EXPECT_EQ(writeJson(toJson(response)), text);
    EXPECT_EQ(fromJson<CapabilityMessagesListResponse>(parseJson(text)), response);
}

TEST(MessagesModels, ASendResponse) {
    const CapabilityMessagesSendResponse response{
        .brokerPath = "b", .bundlePath = "p", .phone = "+49", .messageLength = 5, .detail = "D"};
    const std::string text = R"({
  "brokerPath" : "b",
  "bundlePath" : "p",
  "detail" : "D",
  "messageLength" : 5,
  "phone" : "+49"
})";
    EXPECT_EQ(writeJson(toJson(response)), text);
    EXPECT_EQ(fromJson<CapabilityMessagesSendResponse>(parseJson(text)), response);
}

} // namespace
} // namespace vesk
