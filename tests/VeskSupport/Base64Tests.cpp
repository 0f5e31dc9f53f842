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

} // namespace
} // namespace vesk
