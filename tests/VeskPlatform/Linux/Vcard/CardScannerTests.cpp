#include "VeskPlatform/Linux/Vcard/CardScanner.hpp"

#include <gmock/gmock.h>

namespace vesk::vcard {
namespace {

struct ScanCase {
    const char* name;
    std::string bytes;
    std::vector<std::string> cards;
    bool damaged;
};

void check(const ScanCase& c) {
    const ScannedCards scanned = scanCards(c.bytes);
    std::vector<std::string> cards;
    for (const CardRange& range : scanned.cards) cards.emplace_back(range.of(c.bytes));
    EXPECT_EQ(cards, c.cards) << c.name;
    EXPECT_EQ(scanned.damaged, c.damaged) << c.name;
}

const std::string anna = "BEGIN:VCARD\r\nFN:Anna\r\nEND:VCARD\r\n", bert = "BEGIN:VCARD\r\nFN:Bert\r\nEND:VCARD\r\n";

TEST(CardScannerTests, FindsTheCardsOfAFile) {
    const std::string folded = "BEGIN:VCARD\nNOTE:a\n END:VCARD\nEND:VCARD\n";
    const ScanCase cases[] = {
        {"one", anna, {anna}, false},
        {"two", anna + bert, {anna, bert}, false},
        {"empty lines between", "\r\n" + anna + "\r\n\r\n" + bert + "\n", {anna, bert}, false},
        {"byte order mark", "\xEF\xBB\xBF" + anna, {anna}, false},
        {"no line end at the end", "BEGIN:VCARD\nEND:VCARD", {"BEGIN:VCARD\nEND:VCARD"}, false},
        {"lower case", "begin:vcard\nend:vcard\n", {"begin:vcard\nend:vcard\n"}, false},
        {"bare CR", "BEGIN:VCARD\rFN:x\rEND:VCARD\r", {"BEGIN:VCARD\rFN:x\rEND:VCARD\r"}, false},
        {"END within a folded text", folded, {folded}, false},
        {"text before and behind", "hello\n" + anna + "bye\n", {anna}, false},
    };
    for (const ScanCase& c : cases) check(c);
}

TEST(CardScannerTests, CardsOfAgentsBelongToTheOuterOne) {
    const std::string nested = "BEGIN:VCARD\nAGENT:\nBEGIN:VCARD\nAGENT:\n\nEND:VCARD\nFN:x\nEND:VCARD\n";
    const std::string deep =
        "BEGIN:VCARD\nAGENT:\nBEGIN:VCARD\nAGENT;X=1:\nBEGIN:VCARD\nEND:VCARD\nEND:VCARD\nEND:VCARD\n";
    const std::string sameLine = "BEGIN:VCARD\nAGENT:BEGIN:VCARD\nFN:x\nEND:VCARD\nEND:VCARD\n";
    const ScanCase cases[] = {
        {"agent", nested, {nested}, false},
        {"agent of an agent", deep + anna, {deep, anna}, false},
        {"agent on one line", sameLine + anna, {sameLine, anna}, false},
        {"agent without a card", "AGENT:\n" + anna, {anna}, false},
    };
    for (const ScanCase& c : cases) check(c);
}

TEST(CardScannerTests, WholeCardsOfDamagedFilesAreFound) {
    const ScanCase cases[] = {
        {"empty", "", {}, true},
        {"only a byte order mark", "\xEF\xBB\xBF", {}, true},
        {"no card", "hello\n", {}, true},
        {"cut off", anna + "BEGIN:VCARD\r\nFN:Be", {anna}, true},
        {"cut off before a whole one", "BEGIN:VCARD\nFN:Be\n" + anna, {anna}, true},
        {"an END too many", anna + "END:VCARD\n" + bert, {anna, bert}, true},
        {"cut off within an agent", "BEGIN:VCARD\nAGENT:\nBEGIN:VCARD\nEND:VCARD\n", {}, true},
    };
    for (const ScanCase& c : cases) check(c);
}

TEST(CardScannerTests, DeepNestingAndNulBytesDoNoHarm) {
    std::string deep = "BEGIN:VCARD\n", ends = "END:VCARD\n";
    for (int i = 0; i < 100'000; ++i) {
        deep += "AGENT:\nBEGIN:VCARD\n";
        ends += "END:VCARD\n";
    }
    check({"deep", deep + ends, {deep + ends}, false});
    check({"deep and cut off", deep, {}, true});
    const std::string zeros = "BEGIN:VCARD\nFN:a" + std::string(3, '\0') + "b\nEND:VCARD\n";
    check({"NUL", zeros, {zeros}, false});
    check({"all NUL", std::string(1000, '\0'), {}, true});
}

TEST(CardScannerTests, LargeFilesTakeOnePass) {
    const std::string line =
        "BEGIN:VCARD\nPHOTO;ENCODING=b:" + std::string(std::size_t{10} << 20, 'A') + "\nEND:VCARD\n";
    check({"a line of 10 MB", line, {line}, false});
    std::string many;
    while (many.size() < std::size_t{32} << 20) many += anna;
    EXPECT_EQ(scanCards(many).cards.size(), many.size() / anna.size());
    std::string bare(std::size_t{16} << 20, '\r');
    EXPECT_TRUE(scanCards(bare).damaged);
}

} // namespace
} // namespace vesk::vcard
