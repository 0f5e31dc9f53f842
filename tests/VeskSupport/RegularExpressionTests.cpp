#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/RegularExpression.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(RegularExpression, ReplacesEachMatch) {
    EXPECT_EQ(replacingMatches("a1b22", "[0-9]+", LetterCase::matters, "#"), "a#b#");
    EXPECT_EQ(replacingMatches("", "[0-9]+", LetterCase::matters, "#"), "");
    EXPECT_EQ(replacingMatches("ab", "(a)(b)", LetterCase::matters, "$2$1\\$"), "ba$");
}

TEST(RegularExpression, LetterCaseIsMinded) {
    EXPECT_EQ(replacingMatches("Ab ab", "ab", LetterCase::matters, "x"), "Ab x");
    EXPECT_EQ(replacingMatches("Ab ab", "ab", LetterCase::ignored, "x"), "x x");
}

TEST(RegularExpression, ClassesHaveTheirUnicodeMeaning) {
    EXPECT_EQ(replacingMatches("a\u2003b\u00A0c", R"(\s)", LetterCase::matters, "_"), "a_b_c");
    EXPECT_EQ(replacingMatches("\u00E9a a", R"(\ba)", LetterCase::matters, "x"), "\u00E9a x");
}

TEST(RegularExpression, IllFormedTextBecomesReplacementCharacters) {
    EXPECT_EQ(replacingMatches("a\xFF"
                               "b",
                               "b", LetterCase::matters, "c"),
              "a\uFFFD"
              "c");
}

TEST(RegularExpression, BrokenPatternAndReplacementThrow) {
    EXPECT_THROW(replacingMatches("a", "(", LetterCase::matters, ""), ErrorRecord);
    EXPECT_THROW(replacingMatches("a", "a", LetterCase::matters, "$7"), ErrorRecord);
}

} // namespace
} // namespace vesk
