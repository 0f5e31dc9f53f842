#include "VeskPlatform/Linux/PosixFileReader.hpp"
#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"
#include "tests/contracts/FileContracts.hpp"
#include "tests/fakes/FakeFiles.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

namespace vesk::test {
namespace {

struct FakeFileWorld {
    FakeFileReader fakeReader;
    FakePrivateFiles fakeFiles;
    FakeFileWorld() {
        fakeReader.folders.insert(folder());
        fakeFiles.folders.insert(folder());
    }
    FakeFileReader& reader() { return fakeReader; }
    FakePrivateFiles& files() { return fakeFiles; }
    std::string folder() const { return "/private"; }
    void put(const std::string& path, const std::string& bytes) { fakeReader.files[path] = bytes; }
    std::string bytes(const std::string& path) { return fakeFiles.files.at(path); }
    unsigned mode(const std::string& path) { return fakeFiles.modes.at(path); }
};

struct PosixFileWorld {
    TemporaryFolder temporary;
    PosixFileReader posixReader;
    PosixPrivateFiles posixFiles;
    PosixFileReader& reader() { return posixReader; }
    PosixPrivateFiles& files() { return posixFiles; }
    std::string folder() const { return temporary.path(); }
    void put(const std::string& path, const std::string& bytes) { std::ofstream(path, std::ios::binary) << bytes; }
    std::string bytes(const std::string& path) { return posixReader.contents(path, 1000); }
    unsigned mode(const std::string& path) {
        return static_cast<unsigned>(std::filesystem::status(path).permissions()) & 07777U;
    }
};

using Worlds = ::testing::Types<FakeFileWorld, PosixFileWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, FileReaderContract, Worlds);
INSTANTIATE_TYPED_TEST_SUITE_P(All, PrivateFilesContract, Worlds);

struct PosixFileReaderTests : ::testing::Test {
    TemporaryFolder folder;
    std::int64_t codeOf(const std::string& path, std::uint64_t most = 1000) {
        return posixCodeOf([&] { PosixFileReader().contents(path, most); });
    }
};

TEST_F(PosixFileReaderTests, APipeIsRefusedWithoutWaitingForAWriter) {
    ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
    EXPECT_EQ(codeOf(folder / "pipe"), EINVAL);
}

TEST_F(PosixFileReaderTests, DevicesAndSocketsAreRefused) {
    EXPECT_EQ(codeOf("/dev/null"), EINVAL);
    EXPECT_EQ(codeOf("/dev/zero"), EINVAL);
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    const std::string path = folder / "socket";
    path.copy(address.sun_path, sizeof address.sun_path - 1);
    const int socket = ::socket(AF_UNIX, SOCK_STREAM, 0);
    ASSERT_EQ(::bind(socket, reinterpret_cast<sockaddr*>(&address), sizeof address), 0);
    EXPECT_EQ(codeOf(path), EINVAL);
    ::close(socket);
}

TEST_F(PosixFileReaderTests, AFileThatAnnouncesNoSizeIsReadAndBounded) {
    EXPECT_NE(PosixFileReader().contents("/proc/self/status", 1 << 20).find("Name:"), std::string::npos);
    EXPECT_EQ(codeOf("/proc/self/status", 10), EFBIG);
}

TEST_F(PosixFileReaderTests, AHugeSparseFileIsRefusedByItsSize) {
    const std::string path = folder.write("huge", "");
    std::filesystem::resize_file(path, std::uintmax_t{1} << 30);
    EXPECT_EQ(codeOf(path, 1 << 20), EFBIG);
}

TEST_F(PosixFileReaderTests, ReadsBeyondOneBlock) {
    const std::string bytes(200'000, 'x');
    EXPECT_EQ(PosixFileReader().contents(folder.write("large", bytes), 200'000), bytes);
}

TEST_F(PosixFileReaderTests, ANullByteInThePathIsRefused) {
    folder.write("a", "secret");
    EXPECT_EQ(codeOf(folder / std::string("a\0b", 3)), EINVAL);
}

TEST_F(PosixFileReaderTests, AFileInAFoldersPlaceIsNoFolder) {
    folder.write("file", "x");
    EXPECT_EQ(codeOf(folder / "file/inner"), ENOTDIR);
}

struct PosixPrivateFilesTests : ::testing::Test {
    TemporaryFolder folder;
    PosixPrivateFiles files;
};

TEST_F(PosixPrivateFilesTests, CreatesAncestorsToo) {
    files.createDirectories(folder / "a/b/c", 0700);
    for (const char* name : {"a", "a/b", "a/b/c"}) EXPECT_EQ(folder.mode(name), 0700U) << name;
}

TEST_F(PosixPrivateFilesTests, ANewFileIsPrivateAndLeavesNoTemporaryOneBehind) {
    files.writeAtomically(folder / "log", "line\n");
    EXPECT_EQ(folder.mode("log"), 0600U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST_F(PosixPrivateFilesTests, AFailedWriteLeavesNothingBehind) {
    std::filesystem::create_directories(folder / "log/inner");
    EXPECT_NE(posixCodeOf([&] { files.writeAtomically(folder / "log", "x"); }), 0);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 1);
}

TEST_F(PosixPrivateFilesTests, APipeOrADeviceInTheFilesPlaceIsRefusedWithoutWaiting) {
    ASSERT_EQ(::mkfifo((folder / "log").c_str(), 0600), 0);
    EXPECT_EQ(posixCodeOf([&] { files.append(folder / "log", "x"); }), EINVAL);
    EXPECT_EQ(posixCodeOf([&] { files.writeThrough(folder / "log", "x"); }), EINVAL);
    EXPECT_EQ(posixCodeOf([&] { files.append("/dev/null", "x"); }), EINVAL);
}

TEST_F(PosixPrivateFilesTests, ANewFileHasItsPermissionsWhateverTheMask) {
    const mode_t before = ::umask(0777);
    files.createFile(folder / "file", 0600);
    ::umask(before);
    EXPECT_EQ(folder.mode("file"), 0600U);
}

TEST_F(PosixPrivateFilesTests, ANewFileNeverFollowsALink) {
    std::filesystem::create_symlink(folder / "elsewhere", folder / "file");
    EXPECT_EQ(posixCodeOf([&] { files.createFile(folder / "file", 0600); }), EEXIST);
    EXPECT_FALSE(folder.exists("elsewhere"));
}

TEST_F(PosixPrivateFilesTests, ALinkItselfIsReplacedAndRemoved) {
    folder.write("kept", "kept");
    folder.write("new", "new");
    std::filesystem::create_symlink(folder / "kept", folder / "link");
    files.rename(folder / "new", folder / "link");
    EXPECT_FALSE(std::filesystem::is_symlink(folder / "link"));
    EXPECT_EQ(folder.read("kept"), "kept");
    std::filesystem::create_symlink(folder / "kept", folder / "second");
    files.removeFile(folder / "second");
    EXPECT_EQ(folder.read("kept"), "kept");
}

TEST_F(PosixPrivateFilesTests, ABrokenLinkDoesNotExistAndALoopFails) {
    std::filesystem::create_symlink(folder / "none", folder / "broken");
    std::filesystem::create_symlink(folder / "loop", folder / "loop");
    EXPECT_FALSE(files.exists(folder / "broken"));
    EXPECT_EQ(posixCodeOf([&] { files.exists(folder / "loop"); }), ELOOP);
}

} // namespace
} // namespace vesk::test
