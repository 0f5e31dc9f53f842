#include "VeskPlatform/Linux/Vdir/ComponentEditor.hpp"

#include <gtest/gtest.h>

namespace vesk::vdir {
namespace {

TEST(ComponentEditorTests, ChangesOnePropertyAndKeepsAllElse) {
    struct Case {
        const char *name, *before, *after;
    };
    const Case cases[] = {
        {"in its place", "BEGIN:V\nA:1\nP:old\nB:2\nEND:V\n", "BEGIN:V\nA:1\nP:new\nB:2\nEND:V\n"},
        {"with parameters", "BEGIN:V\nP;X=\"a:b\":old\nEND:V\n", "BEGIN:V\nP:new\nEND:V\n"},
        {"in lower case", "begin:V\np:old\nend:V\n", "begin:V\nP:new\nend:V\n"},
        {"folded", "BEGIN:V\r\nP:o\r\n ld\r\n\t!\r\nB:2\r\nEND:V\r\n", "BEGIN:V\r\nP:new\r\nB:2\r\nEND:V\r\n"},
        {"folded within its name", "BEGIN:V\nP\n :old\nEND:V\n", "BEGIN:V\nP:new\nEND:V\n"},
        {"more than once", "BEGIN:V\nP:a\nB:2\nP:b\nEND:V\n", "BEGIN:V\nP:new\nB:2\nEND:V\n"},
        {"missing", "BEGIN:V\nB:2\nEND:V\n", "BEGIN:V\nB:2\nP:new\nEND:V\n"},
        {"missing, before inner components", "BEGIN:V\nB:2\nBEGIN:W\nP:w\nEND:W\nC:3\nEND:V\n",
         "BEGIN:V\nB:2\nP:new\nBEGIN:W\nP:w\nEND:W\nC:3\nEND:V\n"},
        {"the end without a line end", "BEGIN:V\nP:old\nEND:V", "BEGIN:V\nP:new\nEND:V"},
        {"a name that begins alike", "BEGIN:V\nPP:1\nEND:V\n", "BEGIN:V\nPP:1\nP:new\nEND:V\n"},
    };
    for (const Case& c : cases) {
        ComponentEditor editor(c.before);
        EXPECT_EQ(editor.text(), c.before) << c.name;
        editor.set("P", "new");
        EXPECT_EQ(editor.text(), c.after) << c.name;
    }
}

TEST(ComponentEditorTests, RemovesItsOwnPropertiesOnly) {
    ComponentEditor editor("BEGIN:V\nP:1\n 2\nBEGIN:W\nP:w\nEND:W\nP:3\nEND:V\n");
    editor.remove("P");
    EXPECT_EQ(editor.text(), "BEGIN:V\nBEGIN:W\nP:w\nEND:W\nEND:V\n");
}

TEST(ComponentEditorTests, TextIsEscaped) {
    EXPECT_EQ(escapedText("a,b;c\\d\r\ne\tf\x01g\""), "a\\,b\\;c\\\\d\\ne\tfg\"");
}

TEST(ComponentEditorTests, LongLinesAreFoldedBetweenCharacters) {
    std::string line = "P:";
    for (int i = 0; i < 100; ++i) line += "\xC3\xA4";
    const std::string folded = foldedLine(line, "\r\n");
    std::string joined;
    for (std::size_t begin = 0; begin < folded.size();) {
        const std::size_t end = folded.find("\r\n", begin);
        const std::string physical = folded.substr(begin, end - begin);
        EXPECT_LE(physical.size(), 75U);
        EXPECT_NE(static_cast<unsigned char>(physical.back()), 0xC3U);
        joined += begin == 0 ? physical : physical.substr(1);
        begin = end + 2;
    }
    EXPECT_EQ(joined, line);
    EXPECT_EQ(foldedLine(std::string(75, 'x'), "\n"), std::string(75, 'x') + "\n");
}

} // namespace
} // namespace vesk::vdir
