#include "VeskPlatform/Linux/HomePlaces.hpp"

#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeFiles.hpp"

#include <gmock/gmock.h>

namespace vesk::test {
namespace {

using ::testing::ElementsAre;

struct HomePlacesTests : ::testing::Test {
    FakeEnvironment environment;
    FakeFileReader files;
    HomePlaces places{environment, files};
};

TEST_F(HomePlacesTests, ProtectedPlacesAreInTheirOrderWithTheirLabels) {
    EXPECT_THAT(places.protectedPlaces("/h"),
                ElementsAre(ProtectedPlace{"/h/.local/share/keyrings", "~/.local/share/keyrings"},
                            ProtectedPlace{"/h/.thunderbird", "~/.thunderbird"},
                            ProtectedPlace{"/h/.mozilla", "~/.mozilla"},
                            ProtectedPlace{"/h/.local/share/evolution", "~/.local/share/evolution"}));
}

TEST_F(HomePlacesTests, WithoutEntriesTheFoldersHaveTheirUsualNames) {
    EXPECT_THAT(places.guardedFolders("/h"), ElementsAre("/h/Desktop", "/h/Documents", "/h/Downloads"));
}

TEST_F(HomePlacesTests, EntriesOfTheUserNameTheFolders) {
    files.files["/h/.config/user-dirs.dirs"] =
        "XDG_DOWNLOAD_DIR=\"/data/in\"\nXDG_DESKTOP_DIR=\"$HOME/Schreibtisch\"\n";
    EXPECT_THAT(places.guardedFolders("/h"), ElementsAre("/h/Schreibtisch", "/h/Documents", "/data/in"));
    environment.variables["XDG_CONFIG_HOME"] = "/config";
    files.files["/config/user-dirs.dirs"] = "XDG_DOCUMENTS_DIR=\"$HOME/Texte\"\n";
    EXPECT_THAT(places.guardedFolders("/h"), ElementsAre("/h/Desktop", "/h/Texte", "/h/Downloads"));
    environment.variables["XDG_CONFIG_HOME"] = "relative";
    EXPECT_THAT(places.guardedFolders("/h"), ElementsAre("/h/Schreibtisch", "/h/Documents", "/data/in"));
}

TEST_F(HomePlacesTests, AFolderThatIsTheHomeItselfIsNotGuarded) {
    files.files["/h/.config/user-dirs.dirs"] = "XDG_DESKTOP_DIR=\"$HOME/\"\nXDG_DOCUMENTS_DIR=\"$HOME\"\n";
    EXPECT_THAT(places.guardedFolders("/h"), ElementsAre("/h/Downloads"));
}

TEST_F(HomePlacesTests, TheDriveComesLast) {
    environment.variables["VESK_CLOUD_DRIVE"] = "/mnt/drive/";
    EXPECT_THAT(places.guardedFolders("/h"), ElementsAre("/h/Desktop", "/h/Documents", "/h/Downloads", "/mnt/drive"));
}

} // namespace
} // namespace vesk::test
