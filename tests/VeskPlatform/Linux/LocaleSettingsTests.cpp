#include "VeskPlatform/Linux/SystemLocaleSettings.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

TEST(LocaleSettingsTests, PosixNamesAsIcuIdentifiers) {
    const std::pair<const char*, const char*> cases[] = {
        {"de_DE.UTF-8", "de_DE"},
        {"de_DE", "de_DE"},
        {"de", "de"},
        {"de_DE@euro", "de_DE"},
        {"sr_RS@latin", "sr_Latn_RS"},
        {"sr_RS.UTF-8@latin", "sr_Latn_RS"},
        {"uz_UZ@cyrillic", "uz_Cyrl_UZ"},
        {"es_419", "es_419"},
        {"C", "en_US_POSIX"},
        {"C.UTF-8", "en_US_POSIX"},
        {"POSIX", "en_US_POSIX"},
        {"", "en_US_POSIX"},
        {"../../etc", "en_US_POSIX"},
        {"de_", "en_US_POSIX"},
        {"d1_DE", "en_US_POSIX"},
        {"german", "en_US_POSIX"},
    };
    for (const auto& [name, identifier] : cases) EXPECT_EQ(icuLocale(name), identifier) << name;
}

struct SystemLocaleSettingsTests : ::testing::Test {
    TemporaryFolder folder;
    FakeEnvironment environment;
    TimeZonePlaces places{folder / "etc/localtime", folder / "etc/timezone", folder / "usr/share/zoneinfo"};
    SystemLocaleSettings settings{environment, places};

    void SetUp() override {
        folder.write("usr/share/zoneinfo/Europe/Berlin", "berlin's rules");
        folder.write("usr/share/zoneinfo/Asia/Tokyo", "tokyo's rules, longer");
        std::filesystem::create_directories(folder / "etc");
    }
};

TEST_F(SystemLocaleSettingsTests, TheLocaleOfCollationCounts) {
    using Variables = std::map<std::string, std::string>;
    const std::pair<Variables, const char*> cases[] = {
        {{}, "en_US_POSIX"},
        {{{"LANG", "fr_FR.UTF-8"}}, "fr_FR"},
        {{{"LANG", "fr_FR.UTF-8"}, {"LC_TIME", "de_DE.UTF-8"}}, "fr_FR"},
        {{{"LANG", "fr_FR.UTF-8"}, {"LC_COLLATE", "sv_SE.UTF-8"}}, "sv_SE"},
        {{{"LANG", "fr_FR.UTF-8"}, {"LC_COLLATE", "sv_SE.UTF-8"}, {"LC_ALL", "da_DK"}}, "da_DK"},
        {{{"LANG", "fr_FR.UTF-8"}, {"LC_ALL", ""}}, "fr_FR"},
        {{{"LANG", "fr_FR.UTF-8"}, {"LC_ALL", "C"}}, "en_US_POSIX"},
    };
    for (const auto& [variables, expected] : cases) {
        environment.variables = variables;
        EXPECT_EQ(settings.locale(), expected);
    }
}

TEST_F(SystemLocaleSettingsTests, TheVariableDecidesAlone) {
    std::filesystem::create_symlink("/usr/share/zoneinfo/Asia/Tokyo", places.localtime);
    std::filesystem::create_symlink("/usr/share/zoneinfo/Europe/Oslo", folder / "link");
    const std::pair<std::string, const char*> cases[] = {
        {"Europe/Berlin", "Europe/Berlin"},
        {":Europe/Berlin", "Europe/Berlin"},
        {"/usr/share/zoneinfo/Europe/Berlin", "Europe/Berlin"},
        {":/usr/share/zoneinfo/Europe/Berlin", "Europe/Berlin"},
        {"posix/Europe/Berlin", "Europe/Berlin"},
        {"/usr/share/zoneinfo/right/Europe/Berlin", "Europe/Berlin"},
        {folder / "link", "Europe/Oslo"},
        {"EST5EDT", "EST5EDT"},
        {"UTC", "UTC"},
        {"CET-1CEST,M3.5.0,M10.5.0/3", "CET-1CEST,M3.5.0,M10.5.0/3"},
        {"<+0330>-3:30", "GMT+03:30"},
        {"GMT-1", "GMT+01:00"},
        {"", "UTC"},
        {"Nowhere/Land", "UTC"},
        {"/no/such/file", "UTC"},
    };
    for (const auto& [variable, zone] : cases) {
        environment.variables["TZ"] = variable;
        EXPECT_EQ(settings.timeZone(), zone) << variable;
    }
}

TEST_F(SystemLocaleSettingsTests, WithoutAnythingItIsUtc) { EXPECT_EQ(settings.timeZone(), "UTC"); }

TEST_F(SystemLocaleSettingsTests, TheLinkNamesTheZoneThatTheUserChose) {
    for (const char* target : {"/usr/share/zoneinfo/Europe/Oslo", "../usr/share/zoneinfo/Europe/Oslo"}) {
        std::filesystem::remove(places.localtime);
        std::filesystem::create_symlink(target, places.localtime);
        EXPECT_EQ(settings.timeZone(), "Europe/Oslo") << target;
    }
    std::filesystem::rename(places.localtime, folder / "etc/second");
    std::filesystem::create_symlink("second", places.localtime);
    EXPECT_EQ(settings.timeZone(), "Europe/Oslo") << "two links";
}

TEST_F(SystemLocaleSettingsTests, ALoopOfLinksIsNoZone) {
    std::filesystem::create_symlink("localtime", places.localtime);
    EXPECT_EQ(settings.timeZone(), "UTC");
}

TEST_F(SystemLocaleSettingsTests, TheTextFileCountsWhereThereIsNoLink) {
    folder.write("etc/localtime", "berlin's rules");
    folder.write("etc/timezone", "Asia/Tokyo\n");
    EXPECT_EQ(settings.timeZone(), "Asia/Tokyo");
    folder.write("etc/timezone", "Nowhere/Land\n");
    EXPECT_EQ(settings.timeZone(), "Europe/Berlin");
}

TEST_F(SystemLocaleSettingsTests, ACopiedFileIsFoundByItsContents) {
    folder.write("etc/localtime", "tokyo's rules, longer");
    EXPECT_EQ(settings.timeZone(), "Asia/Tokyo");
    folder.write("etc/localtime", "a zone of one's own");
    EXPECT_EQ(settings.timeZone(), "UTC");
}

} // namespace
} // namespace vesk::test
