#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"

#include <gmock/gmock.h>
#include <vector>

namespace vesk::vcard {
namespace {

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    PhysicalLines physical(text);
    while (!physical.atEnd()) lines.emplace_back(physical.take().text);
    return lines;
}

TEST(PhysicalLinesTests, EveryLineEndEndsALine) {
    const std::vector<std::string> expected{"a", "b", "", "c"};
    for (const std::string lineEnd : {"\n", "\r\n", "\r\r\n"})
        EXPECT_EQ(linesOf("a" + lineEnd + "b" + lineEnd + lineEnd + "c"), expected) << testing::PrintToString(lineEnd);
    EXPECT_EQ(linesOf("a\rb\r\rc"), expected);
    EXPECT_EQ(linesOf("a\rb\n\rc"), expected) << "mixed";
    EXPECT_EQ(linesOf("a\n"), std::vector<std::string>{"a"});
    EXPECT_EQ(linesOf("a\r"), std::vector<std::string>{"a"});
    EXPECT_TRUE(linesOf("").empty());
}

TEST(PhysicalLinesTests, LinesCoverTheTextWithoutGaps) {
    const std::string_view text = "one\r\n two\rthree\n\r\r\nfour";
    PhysicalLines physical(text);
    std::size_t behind = 0;
    while (!physical.atEnd()) {
        const PhysicalLine peeked = physical.peek();
        const PhysicalLine line = physical.take();
        EXPECT_EQ(line.begin, behind);
        EXPECT_EQ(peeked.begin, line.begin);
        EXPECT_EQ(peeked.next, line.next);
        behind = line.next;
    }
    EXPECT_EQ(behind, text.size());
}

TEST(PhysicalLinesTests, BlanksAndTabsContinueALine) {
    for (const auto& [text, expected] :
         {std::pair{"a\n b", true}, std::pair{"a\n\tb", true}, std::pair{"a\nb", false}, std::pair{"a\n", false}}) {
        PhysicalLines physical(text);
        physical.take();
        EXPECT_EQ(physical.continues(), expected) << text;
    }
}

TEST(PhysicalLinesTests, ManyBareCarriageReturnsTakeLinearTime) {
    const std::string text(std::size_t{8} << 20, '\r');
    EXPECT_EQ(linesOf(text).size(), text.size());
}

TEST(PhysicalLinesTests, MarkersOfCards) {
    struct Case {
        std::string_view line;
        CardMarker marker;
    };
    const Case cases[] = {
        {"BEGIN:VCARD", CardMarker::begin},
        {"begin:vcard ", CardMarker::begin},
        {"BEGIN : VCARD", CardMarker::begin},
        {"END:VCARD", CardMarker::end},
        {"End:vCard\t", CardMarker::end},
        {"AGENT:", CardMarker::agent},
        {"item1.agent;TYPE=x: ", CardMarker::agent},
        {"AGENT:BEGIN:VCARD", CardMarker::agentBegin},
        {"AGENT:BEGIN:VCARD\\nFN:x", CardMarker::none},
        {"AGENT;VALUE=uri:CID:x", CardMarker::none},
        {" END:VCARD", CardMarker::none},
        {"\tBEGIN:VCARD", CardMarker::none},
        {"BEGIN:VEVENT", CardMarker::none},
        {"BEGIN", CardMarker::none},
        {"XEND:VCARD", CardMarker::none},
        {"a.b", CardMarker::none},
        {"", CardMarker::none},
    };
    for (const Case& c : cases) EXPECT_EQ(cardMarker(c.line), c.marker) << c.line;
}

TEST(PhysicalLinesTests, WordsCompareWithoutCase) {
    EXPECT_TRUE(isSameWord("vCard", "VCARD"));
    EXPECT_FALSE(isSameWord("VCARDS", "VCARD"));
    EXPECT_EQ(upperCased("x-abLabel\xC3\xA4"), "X-ABLABEL\xC3\xA4");
    EXPECT_EQ(withoutBlanks(" \ta b\t "), "a b");
    EXPECT_EQ(withoutBlanks("  "), "");
}

} // namespace
} // namespace vesk::vcard
