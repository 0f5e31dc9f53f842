#include "VeskSupport/Text.hpp"

#include <gtest/gtest.h>
#include <tuple>

namespace vesk {
namespace {

TEST(Trimming, TakesUnicodeWhiteSpaceOffBothEnds) {
    EXPECT_EQ(trimmed(" \t\n\v\f\r a b \u0085\u00a0\u1680\u2003\u2028\u2029\u202f\u205f\u3000"), "a b");
    EXPECT_EQ(trimmed("\u200b a"), "\u200b a"); // zero-width space is no white space
    EXPECT_EQ(trimmed("\x1c"), "\x1c");
    EXPECT_EQ(trimmed(" \xff "), "\xff");
    EXPECT_TRUE(isBlank(""));
    EXPECT_TRUE(isBlank("\u3000\r\n"));
    EXPECT_FALSE(isBlank(" . "));
}

TEST(Trimming, CountsAnEmptyRestAsAbsent) {
    EXPECT_EQ(trimmedOrAbsent(std::nullopt), std::nullopt);
    EXPECT_EQ(trimmedOrAbsent(""), std::nullopt);
    EXPECT_EQ(trimmedOrAbsent(" \u2003\n"), std::nullopt);
    EXPECT_EQ(trimmedOrAbsent(" a b\t"), "a b");
}

TEST(DigitPatterns, TakeDigitsOfAnyScriptAndTheWholeText) {
    EXPECT_TRUE(matchesDigitPattern("2026-04", "0000-00"));
    EXPECT_TRUE(matchesDigitPattern("\u0662\u0660\u0662\u0666-\uff10\uff14", "0000-00"));
    EXPECT_FALSE(matchesDigitPattern("2026-0", "0000-00"));
    EXPECT_FALSE(matchesDigitPattern("2026-041", "0000-00"));
    EXPECT_FALSE(matchesDigitPattern("2026/04", "0000-00"));
    EXPECT_FALSE(matchesDigitPattern("202\u00bd-04", "0000-00")); // a number, but no digit
    EXPECT_FALSE(matchesDigitPattern("202\xff-04", "0000-00"));
}

TEST(Lowercasing, FollowsNoLocale) {
    EXPECT_EQ(lowercased("HoliDAY I"), "holiday i");
    EXPECT_EQ(lowercased("\u00c4\u0130\u03a3"), "\u00e4i\u0307\u03c2");
}

TEST(Repairing, ReplacesEachMaximalSubpart) {
    EXPECT_EQ(repairedUtf8("plain"), "plain");
    EXPECT_EQ(repairedUtf8("a\xffz"), "a\uFFFDz");
    EXPECT_EQ(repairedUtf8("\xe2\x82"), "\uFFFD");
    EXPECT_EQ(repairedUtf8("\xed\xa0\x80"), "\uFFFD\uFFFD\uFFFD");
}

TEST(AlphanumericRuns, KeepLettersMarksAndNumbers) {
    EXPECT_EQ(alphanumericRuns("team  sync - q3!"), (std::vector<std::string>{"team", "sync", "q3"}));
    EXPECT_EQ(alphanumericRuns("\u00e9t\u00e9_e\u0301 \u0663"),
              (std::vector<std::string>{"\u00e9t\u00e9", "e\u0301", "\u0663"}));
    EXPECT_TRUE(alphanumericRuns("?!").empty());
}

TEST(Words, StandBetweenRunsOfWhiteSpace) {
    EXPECT_EQ(words(" Anna\u00a0 Maria\tSchmidt\n"), (std::vector<std::string>{"Anna", "Maria", "Schmidt"}));
    EXPECT_EQ(words("Cher"), std::vector<std::string>{"Cher"});
    EXPECT_TRUE(words(" \u3000").empty());
}

TEST(DigitsOnly, KeepsNumbersOfAnyScript) {
    EXPECT_EQ(digitsOnly("+49 (176) 12-3"), "49176123");
    EXPECT_EQ(digitsOnly("\u0661\u0662 x \uff13"), "\u0661\u0662\uff13");
    EXPECT_EQ(digitsOnly("\u00bd \u2167"), "\u00bd\u2167");
    EXPECT_EQ(digitsOnly("none"), "");
}

TEST(Splitting, CountsEmptyPieces) {
    EXPECT_EQ(split("a,,b,", ','), (std::vector<std::string>{"a", "", "b", ""}));
    EXPECT_EQ(joined({"a", "b"}, ", "), "a, b");
    EXPECT_EQ(joined({}, ", "), "");
}

TEST(Lines, EndAtEveryKindOfLineEndAndAreNeverEmpty) {
    using Lines = std::vector<std::string_view>;
    EXPECT_EQ(lines("a\nb\r\nc\rd\ve\ff\u0085g\u2028h\u2029i"), (Lines{"a", "b", "c", "d", "e", "f", "g", "h", "i"}));
    EXPECT_EQ(lines("\n\n a \n\n"), (Lines{" a "}));
    EXPECT_EQ(lines("a b\tc\x1f\u00a0"), (Lines{"a b\tc\x1f\u00a0"})) << "other white space divides nothing";
    EXPECT_EQ(lines("\xe2\x80\nb"), (Lines{"\xe2\x80", "b"})) << "broken text";
    EXPECT_TRUE(lines("").empty());
}

TEST(CharacterCount, CountsWhatPeopleSee) {
    const std::pair<std::string_view, std::size_t> cases[] = {
        {"", 0},
        {"hello", 5},
        {"a\r\nb", 3},
        {"a\n\rb", 4},
        {"\u00e9", 1},
        {"e\u0301", 1},
        {"\U0001F1E9\U0001F1EA", 1},                          // a flag
        {"\U0001F468\u200D\U0001F469\u200D\U0001F467 ok", 4}, // a family
        {"a\xff", 2},
    };
    for (const auto& [text, count] : cases) EXPECT_EQ(characterCount(text), count) << text;
}

TEST(Text, FirstCharactersAreThoseThatPeopleCount) {
    const std::string family = "\U0001F468\u200D\U0001F469\u200D\U0001F467", accented = "e\u0301";
    const std::tuple<std::string, std::size_t, std::string> cases[] = {
        {"", 3, ""},
        {"abc", 0, ""},
        {"abc", 2, "ab"},
        {"abc", 9, "abc"},
        {"a\r\nb", 2, "a\r\n"},
        {"ab" + accented, 2, "ab"},
        {accented + "x", 1, accented},
        {family + family + "x", 2, family + family},
        {family + family, 9, family + family},
    };
    for (const auto& [text, count, first] : cases) EXPECT_EQ(firstCharacters(text, count), first) << text << count;
}

TEST(Utf8, IsWellFormedOrNot) {
    for (const std::string text : {"", "plain", "\u00e9\U0001F600\uFFFD", "a\xEF\xBB\xBF"})
        EXPECT_TRUE(isWellFormedUtf8(text)) << text;
    for (const std::string text : {"\xFF", "a\xC3", "\xC0\x80", "\xED\xA0\x80", "\xF4\x90\x80\x80", "ok \x80 ok"})
        EXPECT_FALSE(isWellFormedUtf8(text)) << text;
}

TEST(Collation, IgnoresCaseAndFollowsTheLocale) {
    const CaseInsensitiveCollator english("en_US"), swedish("sv_SE"), unknown("xx_YY@nonsense");
    EXPECT_EQ(english.compare("WORK", "work"), 0);
    EXPECT_LT(english.compare("alpha", "Beta"), 0);
    EXPECT_NE(english.compare("resume", "r\u00e9sum\u00e9"), 0);
    EXPECT_LT(english.compare("\u00e4", "z"), 0);
    EXPECT_GT(swedish.compare("\u00e4", "z"), 0);
    EXPECT_LT(unknown.compare("a", "B"), 0);
}

TEST(Collation, IgnoresCaseInThePosixLocaleToo) {
    const CaseInsensitiveCollator posix("en_US_POSIX");
    EXPECT_EQ(posix.compare("WORK", "work"), 0);
    EXPECT_LT(posix.compare("alpha", "Beta"), 0);
}

} // namespace
} // namespace vesk
