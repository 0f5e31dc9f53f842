#include "VeskSupport/TextFolding.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

struct FoldingCase {
    const char* locale;
    const char* text;
    const char* folded;
};

TEST(TextFolding, DropsCaseAndDiacriticsOfEveryScript) {
    const FoldingCase cases[] = {
        {"en_US", "", ""},
        {"en_US", " \u3000Dana\t", "dana"},
        {"en_US", "M\u00dcLLER", "muller"},
        {"de_DE", "Mu\u0308ller", "muller"},
        {"de_DE", "STRASSE", "strasse"},
        {"de_DE", "Stra\u00dfe", "strasse"},
        {"de_DE", "\u1e9e", "ss"},
        {"el_GR", "\u039f\u0394\u03a5\u03a3\u03a3\u0395\u03a5\u03a3",
         "\u03bf\u03b4\u03c5\u03c3\u03c3\u03b5\u03c5\u03c3"},
        {"el_GR", "\u1f48\u03b4\u03c5\u03c3\u03c3\u03b5\u03cd\u03c2",
         "\u03bf\u03b4\u03c5\u03c3\u03c3\u03b5\u03c5\u03c3"},
        {"en_US", "\u0130stanbul", "istanbul"},
        {"en_US", "ISPARTA", "isparta"},
        {"ar", "\u0645\u064f\u062d\u064e\u0645\u0651\u064e\u062f", "\u0645\u062d\u0645\u062f"},
        {"he", "\u05e9\u05c1\u05dc\u05d5\u05b9\u05dd", "\u05e9\u05dc\u05d5\u05dd"},
        {"vi_VN", "Nguy\u1ec5n", "nguyen"},
        {"pl_PL", "\u0141\u00f3d\u017a", "\u0142odz"}, // the stroke is part of the letter
        {"hi_IN", "\u0930\u093e\u092e\u0941", "\u0930\u093e\u092e\u0941"},
        {"ja_JP", "\u304c", "\u304b\u3099"}, // another letter than \u304b
        {"en_US", "\u2764\ufe0f \U0001F469\u200d\U0001F4BB", "\u2764 \U0001F469\u200d\U0001F4BB"},
        {"en_US", "\xff", "\ufffd"},
    };
    for (const auto& each : cases) EXPECT_EQ(TextFolding(each.locale).folded(each.text), each.folded) << each.text;
}

TEST(TextFolding, TellsTheTwoTurkishLettersApart) {
    const FoldingCase cases[] = {{"tr_TR", "ISPARTA", "\u0131sparta"},     {"tr", "\u0130STANBUL", "istanbul"},
                                 {"tr", "I\u0307STANBUL", "istanbul"},     {"az_Latn_AZ", "I", "\u0131"},
                                 {"tr@calendar=gregorian", "I", "\u0131"}, {"trv_TW", "I", "i"}};
    for (const auto& each : cases) EXPECT_EQ(TextFolding(each.locale).folded(each.text), each.folded) << each.text;
}

TEST(TextFolding, KeepsPunctuation) {
    const TextFolding folding("en_US");
    for (const char* text : {"+", "...", "\u2026", "\u00b4", "?!", "\u00a8"}) EXPECT_EQ(folding.folded(text), text);
}

} // namespace
} // namespace vesk
