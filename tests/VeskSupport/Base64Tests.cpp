#include "VeskSupport/Base64.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

/// The vectors of RFC 4648, section 10.
TEST(Base64, Decodes) {
    const std::pair<const char*, const char*> cases[] = {{"", ""},
                                                         {"Zg==", "f"},
                                                         {"Zm8=", "fo"},
                                                         {"Zm9v", "foo"},
                                                         {"Zm9vYg==", "foob"},
                                                         {"Zm9vYmE=", "fooba"},
                                                         {"Zm9vYmFy", "foobar"},
                                                         {"Zm9vYg", "foob"}};
    for (const auto& [text, bytes] : cases) EXPECT_EQ(base64Decoded(text), bytes) << text;
    EXPECT_EQ(base64Decoded("//79/A=="), std::string("\xFF\xFE\xFD\xFC"));
}

TEST(Base64, RefusesWhatIsNone) {
    for (const char* text : {"Zm9v!", "Z", "Zg=a", "Zm9v Yg", "_-8="})
        EXPECT_EQ(base64Decoded(text), std::nullopt) << text;
}

TEST(Base64, EncodesForUrlsWithoutPadding) {
    const std::pair<std::string, const char*> cases[] = {
        {"", ""},           {"f", "Zg"},          {"fo", "Zm8"},          {"foo", "Zm9v"},
        {"foob", "Zm9vYg"}, {"fooba", "Zm9vYmE"}, {"foobar", "Zm9vYmFy"}, {"\xFF\xFE\xFD\xFC", "__79_A"},
        {"\xFB", "-w"}};
    for (const auto& [bytes, text] : cases) EXPECT_EQ(base64UrlEncoded(bytes), text) << text;
    EXPECT_EQ(base64UrlEncoded(std::string(3, '\0')), "AAAA");
}

} // namespace
} // namespace vesk
