#include "VeskPlatform/Linux/Desktop/DesktopEntry.hpp"

#include "tests/fakes/FakeBasics.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;

TEST(DesktopEntryTests, OnlyTheMainGroupCounts) {
    const DesktopEntry entry(
        "# comment\nName=Before\n[Other]\nName=Other\n\n[Desktop Entry]\n Name = Editor \r\nno value\n"
        "Hidden=true\nNoDisplay=TRUE\n[Desktop Action new]\nName=New\n[Desktop Entry]\nIcon=late\n");
    EXPECT_EQ(entry.text("Name"), "Editor");
    EXPECT_EQ(entry.text("Icon"), std::nullopt);
    EXPECT_TRUE(entry.isTrue("Hidden"));
    EXPECT_FALSE(entry.isTrue("NoDisplay"));
    EXPECT_FALSE(entry.isTrue("Absent"));
    EXPECT_EQ(DesktopEntry("").text("Name"), std::nullopt);
    EXPECT_EQ(DesktopEntry("[Desktop Entry]\nName=First\nName=Second").text("Name"), "First");
}

TEST(DesktopEntryTests, EscapesAreUndone) {
    EXPECT_EQ(DesktopEntry("[Desktop Entry]\nName=\\sa\\tb\\nc\\rd\\\\e\\;\\").text("Name"), " a\tb\nc\rd\\e;\\");
}

TEST(DesktopEntryTests, TheFirstLocaleThatHasAValueCounts) {
    const DesktopEntry entry("[Desktop Entry]\nName=Editor\nName[de]=Bearbeiter\nName[de_AT]=Schreiber\n");
    EXPECT_EQ(entry.localizedText("Name", {"de_AT", "de"}), "Schreiber");
    EXPECT_EQ(entry.localizedText("Name", {"de_DE", "de"}), "Bearbeiter");
    EXPECT_EQ(entry.localizedText("Name", {"fr"}), "Editor");
    EXPECT_EQ(entry.localizedText("Icon", {"de"}), std::nullopt);
}

TEST(DesktopEntryTests, LocalesComeFromTheVariablesOfMessages) {
    struct Case {
        std::map<std::string, std::string> variables;
        std::vector<std::string> expected;
    };
    const Case cases[]{
        {{}, {}},
        {{{"LANG", "C.UTF-8"}, {"LANGUAGE", "de"}}, {}},
        {{{"LANG", "de_DE.UTF-8"}}, {"de_DE", "de"}},
        {{{"LANG", "sr_RS.UTF-8@latin"}}, {"sr_RS@latin", "sr_RS", "sr@latin", "sr"}},
        {{{"LC_ALL", ""}, {"LC_MESSAGES", "fr_FR"}, {"LANG", "de_DE"}}, {"fr_FR", "fr"}},
        {{{"LC_ALL", "it"}, {"LC_MESSAGES", "fr_FR"}}, {"it"}},
        {{{"LANG", "de_DE.UTF-8"}, {"LANGUAGE", "nl:en_GB::de"}}, {"nl", "en_GB", "en", "de", "de_DE"}},
    };
    for (const Case& each : cases) {
        FakeEnvironment environment;
        environment.variables = each.variables;
        EXPECT_THAT(messageLocales(environment), ElementsAreArray(each.expected));
    }
}

TEST(DesktopEntryTests, CommandsFollowTheRulesOfExec) {
    struct Case {
        const char* exec;
        std::vector<std::string> expected;
    };
    const Case cases[]{
        {"editor", {"editor"}},
        {"editor  --new %U", {"editor", "--new"}},
        {"editor --file=%f x", {"editor", "--file=", "x"}},
        {R"("/opt/My App/run" "a \\"b\\" \\$c" "")", {"/opt/My App/run", "a \"b\" $c", ""}},
        {"editor %i --title %c %k 100%%", {"editor", "--icon", "pen", "--title", "Bearbeiter", "/x/e.desktop", "100%"}},
        {"editor %d %v %", {"editor", "%"}},
        {"editor \"open", {}},
        {"", {}},
    };
    for (const Case& each : cases) {
        const DesktopEntry entry(std::string("[Desktop Entry]\nName=Editor\nName[de]=Bearbeiter\nIcon=pen\nExec=")
                                 + each.exec);
        EXPECT_THAT(startCommand(entry, "/x/e.desktop", {"de"}), ElementsAreArray(each.expected)) << each.exec;
    }
    EXPECT_THAT(startCommand(DesktopEntry("[Desktop Entry]\nName=E\nExec=e %i\n"), "/e", {}), ElementsAre("e"));
    EXPECT_THAT(startCommand(DesktopEntry("[Desktop Entry]\nName=E\n"), "/e", {}), ElementsAre());
}

} // namespace
} // namespace vesk::test
