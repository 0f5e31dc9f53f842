#include "VeskSupport/Sha256.hpp"

#include <gtest/gtest.h>
#include <string>

namespace vesk {
namespace {

std::string hexadecimal(std::string_view bytes) {
    std::string text;
    for (const std::uint8_t byte : sha256(bytes)) {
        text += "0123456789abcdef"[byte >> 4];
        text += "0123456789abcdef"[byte & 15];
    }
    return text;
}

// The examples of FIPS 180-4, published by NIST, and the digest of nothing.
TEST(Sha256, GivesThePublishedDigests) {
    EXPECT_EQ(hexadecimal("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
    EXPECT_EQ(hexadecimal(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
    EXPECT_EQ(hexadecimal("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
              "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
    EXPECT_EQ(hexadecimal(std::string(1'000'000, 'a')),
              "cdc76e5c9914fb9281a1c7e284d73e67f1809a48a497200e046d39ccc7112cd0");
}

TEST(Sha256, CountsANullByte) { EXPECT_NE(hexadecimal(std::string("a\0b", 3)), hexadecimal("a")); }

} // namespace
} // namespace vesk
