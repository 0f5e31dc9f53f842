#include "VeskShellCore/VeskAuthPKCE.hpp"

#include <gtest/gtest.h>
#include <set>

namespace vesk {
namespace {

/// RFC 7636, appendix B.
TEST(VeskAuthPKCETests, GivesThePublishedChallenge) {
    EXPECT_EQ(VeskAuthPKCE::s256CodeChallenge("dBjftJeZ4CVP-mB92K27uhbUJU1p1r_wW1gFWFOEjXk"),
              "E9Melhoa2OwvFrEMTJguCHaoeK1t8URWbuGJSstw-cM");
}

TEST(VeskAuthPKCETests, AnyVerifierHas43CharactersOfTheUrlAlphabet) {
    std::string seen;
    for (int i = 0; i < 200; ++i) {
        const std::string challenge = VeskAuthPKCE::s256CodeChallenge("verifier " + std::to_string(i));
        EXPECT_EQ(challenge.size(), 43U);
        EXPECT_EQ(challenge.find_first_of("+/="), std::string::npos) << challenge;
        seen += challenge;
    }
    EXPECT_NE(seen.find('-'), std::string::npos);
    EXPECT_NE(seen.find('_'), std::string::npos);
}

TEST(VeskAuthPKCETests, CountsBytesAndNotCharacters) {
    EXPECT_EQ(VeskAuthPKCE::s256CodeChallenge(""), "47DEQpj8HBSa-_TImW-5JCeuQeRkm5NMpJWZG3hSuFU");
    EXPECT_NE(VeskAuthPKCE::s256CodeChallenge("\xC3\xA9"), VeskAuthPKCE::s256CodeChallenge("e\xCC\x81"));
}

} // namespace
} // namespace vesk
