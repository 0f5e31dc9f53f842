#include "VeskPlatform/Linux/Maildir/HtmlText.hpp"

#include <gtest/gtest.h>

namespace vesk::maildir {
namespace {

struct HtmlCase {
    const char* name;
    std::string html, text;
};

class HtmlTexts : public testing::TestWithParam<HtmlCase> {};

TEST_P(HtmlTexts, AreWhatABrowserShows) { EXPECT_EQ(htmlText(GetParam().html, 10'000), GetParam().text); }

INSTANTIATE_TEST_SUITE_P(
    , HtmlTexts,
    testing::Values(
        HtmlCase{"plain", "Hello", "Hello"}, HtmlCase{"empty", "", ""},
        HtmlCase{"tags", "<b>Hel</b>lo <i>you</i>", "Hello you"},
        HtmlCase{"blocks", "<p>One</p>\n<p>Two</p><div>Three</div>", "One\nTwo\nThree"},
        HtmlCase{"lineBreak", "One<br>Two<BR/>Three", "One\nTwo\nThree"},
        HtmlCase{"whiteSpace", "  One \n\t two  ", "One two"},
        HtmlCase{"cells", "<tr><td>1</td><td>2</td></tr>", "1 2"},
        HtmlCase{"script", "a<script>if (a < b) '</p>'</script>b", "ab"},
        HtmlCase{"style", "<style>p { }</style>Hello<STYLE>x</STYLE>", "Hello"},
        HtmlCase{"head", "<html><head><title>T</title></head><body>Hello", "Hello"},
        HtmlCase{"headWithoutEnd", "<head><head><body>Hello", "Hello"},
        HtmlCase{"scriptWithoutEnd", "Hello<script>x", "Hello"}, HtmlCase{"comment", "a<!-- <p>x</p> -->b", "ab"},
        HtmlCase{"commentWithoutEnd", "a<!-- b", "a"}, HtmlCase{"doctype", "<!DOCTYPE html>a", "a"},
        HtmlCase{"entities", "&lt;b&gt; &amp; &quot;x&quot; &eacute;&Eacute; &apos;", "<b> & \"x\" éÉ '"},
        HtmlCase{"hardBlank", "a&nbsp;b&#160;c", "a b c"}, HtmlCase{"numbers", "&#228;&#xe4;&#X1F600;", "ää😀"},
        HtmlCase{"noCharacters", "&#0;&#xD800;&#x110000;&#99999999999;", "\uFFFD\uFFFD\uFFFD\uFFFD"},
        HtmlCase{"unknownEntity", "a &nosuch; b & c &# d", "a &nosuch; b & c &# d"},
        HtmlCase{"withoutSemicolon", "a &lt b", "a < b"}, HtmlCase{"lessThan", "1 < 2 and <3", "1 < 2 and <3"},
        HtmlCase{"quotedGreaterThan", "<a title=\"x > y\" href='a>b'>Hello</a>", "Hello"},
        HtmlCase{"tagWithoutEnd", "Hello<a href", "Hello"}, HtmlCase{"list", "<ul><li>One<li>Two</ul>", "One\nTwo"}),
    [](const auto& tested) { return std::string(tested.param.name); });

TEST(HtmlText, StopsWhenThereIsEnough) { EXPECT_EQ(htmlText(std::string(1000, 'x'), 10), std::string(10, 'x')); }

TEST(HtmlText, TakesLinearTimeOverMarkupWithoutEnds) {
    std::string html;
    for (int i = 0; i < 200'000; ++i) html += "<head></he";
    EXPECT_LT(htmlText(html, 1'000'000).size(), html.size());
}

} // namespace
} // namespace vesk::maildir
