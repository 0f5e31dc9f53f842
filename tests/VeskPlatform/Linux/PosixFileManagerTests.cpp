#include "VeskPlatform/Linux/PosixFileManager.hpp"
#include "tests/contracts/FileContracts.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <filesystem>
#include <fstream>

namespace vesk::test {
namespace {

/// Works in `folder` and comes back.
class Elsewhere {
public:
    explicit Elsewhere(const std::string& folder) : before_(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    ~Elsewhere() { std::filesystem::current_path(before_); }
    Elsewhere(const Elsewhere&) = delete;
    Elsewhere& operator=(const Elsewhere&) = delete;

private:
    std::filesystem::path before_;
};

TEST(PosixFileManager, MakesAFolderWithThoseAboveIt) {
    const TemporaryFolder folder;
    const std::string path = folder / "a/b";
    PosixFileManager().createDirectory(path);
    PosixFileManager().createDirectory(path);
    EXPECT_TRUE(std::filesystem::is_directory(path));
}

TEST(PosixFileManager, RemovesAFileAndAnEmptyFolder) {
    const TemporaryFolder folder;
    PosixFileManager files;
    std::ofstream(folder / "file") << "text";
    files.createDirectory(folder / "empty");
    for (const std::string name : {"file", "empty"}) {
        files.removeItem(folder / name);
        EXPECT_FALSE(files.fileExists(folder / name)) << name;
        EXPECT_EQ(posixCodeOf([&] { files.removeItem(folder / name); }), ENOENT) << name;
    }
}

TEST(PosixFileManager, AFolderWithSomethingInItIsNotRemoved) {
    const TemporaryFolder folder;
    PosixFileManager files;
    files.createDirectory(folder / "full");
    std::ofstream(folder / "full/file") << "text";
    EXPECT_EQ(posixCodeOf([&] { files.removeItem(folder / "full"); }), ENOTEMPTY);
    EXPECT_TRUE(files.fileExists(folder / "full/file"));
}

TEST(PosixFileManager, TellsTheWorkingFolder) {
    const TemporaryFolder folder;
    const Elsewhere elsewhere(folder.path());
    EXPECT_EQ(PosixFileManager().currentDirectoryPath(), std::filesystem::canonical(folder.path()));
}

TEST(PosixFileManager, AWorkingFolderThatIsGoneIsAFailure) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "gone");
    const Elsewhere elsewhere(folder / "gone");
    std::filesystem::remove(folder / "gone");
    EXPECT_EQ(posixCodeOf([] { PosixFileManager().currentDirectoryPath(); }), ENOENT);
}

} // namespace
} // namespace vesk::test
