#pragma once

#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/PrivateFiles.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <gtest/gtest.h>

namespace vesk::test {

/// The code of the PosixError that `call` throws, 0 where it throws none.
template <class Call> std::int64_t posixCodeOf(Call call) {
    try {
        call();
        return 0;
    } catch (const PosixError& error) {
        return error.code();
    }
}

/// What every FileReader owes. `World` has `reader()`, `folder()`, an existing empty folder, and `put(path, bytes)`.
template <class World> class FileReaderContract : public ::testing::Test {
protected:
    World world;
    std::string read(const std::string& name, std::uint64_t most) {
        return world.reader().contents(world.folder() + name, most);
    }
};
TYPED_TEST_SUITE_P(FileReaderContract);

TYPED_TEST_P(FileReaderContract, ReadsAFileWhole) {
    const std::string bytes("a\0b\r\n\xff", 6);
    this->world.put(this->world.folder() + "/file", bytes);
    EXPECT_EQ(this->read("/file", 100), bytes);
}

TYPED_TEST_P(FileReaderContract, AnEmptyFileIsNoFailure) {
    this->world.put(this->world.folder() + "/file", "");
    EXPECT_EQ(this->read("/file", 0), "");
}

TYPED_TEST_P(FileReaderContract, AFileOfExactlyTheLimitIsRead) {
    this->world.put(this->world.folder() + "/file", "12345");
    EXPECT_EQ(this->read("/file", 5), "12345");
    EXPECT_EQ(posixCodeOf([&] { this->read("/file", 4); }), EFBIG);
}

TYPED_TEST_P(FileReaderContract, AMissingFileAndAFolderHaveTheirCodes) {
    EXPECT_EQ(posixCodeOf([&] { this->read("/none", 10); }), ENOENT);
    EXPECT_EQ(posixCodeOf([&] { this->read("", 10); }), EISDIR);
}

REGISTER_TYPED_TEST_SUITE_P(FileReaderContract, ReadsAFileWhole, AnEmptyFileIsNoFailure, AFileOfExactlyTheLimitIsRead,
                            AMissingFileAndAFolderHaveTheirCodes);

/// What every PrivateFiles owes. `World` has `files()`, `folder()`, `bytes(path)` and `mode(path)`.
template <class World> class PrivateFilesContract : public ::testing::Test {
protected:
    World world;
    std::string file() { return world.folder() + "/file"; }
};
TYPED_TEST_SUITE_P(PrivateFilesContract);

TYPED_TEST_P(PrivateFilesContract, CreatesFoldersAndIsContentWithExistingOnes) {
    const std::string folder = this->world.folder() + "/a";
    EXPECT_FALSE(this->world.files().exists(folder));
    this->world.files().createDirectories(folder, 0700);
    this->world.files().createDirectories(folder, 0750);
    EXPECT_TRUE(this->world.files().exists(folder));
    EXPECT_EQ(this->world.mode(folder), 0700U);
}

TYPED_TEST_P(PrivateFilesContract, AFileInAFoldersPlaceIsRefused) {
    this->world.files().writeAtomically(this->file(), "x");
    EXPECT_EQ(posixCodeOf([&] { this->world.files().createDirectories(this->file(), 0700); }), EEXIST);
}

TYPED_TEST_P(PrivateFilesContract, WritesReplacesAndAppends) {
    this->world.files().writeAtomically(this->file(), "one\n");
    this->world.files().writeAtomically(this->file(), "two\n");
    this->world.files().append(this->file(), "three\n");
    EXPECT_TRUE(this->world.files().exists(this->file()));
    EXPECT_EQ(this->world.bytes(this->file()), "two\nthree\n");
}

TYPED_TEST_P(PrivateFilesContract, AppendingNeedsAFile) {
    EXPECT_EQ(posixCodeOf([&] { this->world.files().append(this->file(), "x"); }), ENOENT);
    EXPECT_FALSE(this->world.files().exists(this->file()));
}

TYPED_TEST_P(PrivateFilesContract, SetsPermissions) {
    this->world.files().writeAtomically(this->file(), "x");
    this->world.files().setPermissions(this->file(), 0600);
    EXPECT_EQ(this->world.mode(this->file()), 0600U);
    this->world.files().setPermissions(this->file(), 0640);
    EXPECT_EQ(this->world.mode(this->file()), 0640U);
}

TYPED_TEST_P(PrivateFilesContract, CreatesAnEmptyFileOnlyWhereNothingIs) {
    this->world.files().createFile(this->file(), 0640);
    EXPECT_EQ(this->world.bytes(this->file()), "");
    EXPECT_EQ(this->world.mode(this->file()), 0640U);
    EXPECT_EQ(posixCodeOf([&] { this->world.files().createFile(this->file(), 0600); }), EEXIST);
    EXPECT_EQ(posixCodeOf([&] { this->world.files().createFile(this->world.folder(), 0600); }), EEXIST);
}

TYPED_TEST_P(PrivateFilesContract, WritesThroughToAFileThatIsThere) {
    EXPECT_EQ(posixCodeOf([&] { this->world.files().writeThrough(this->file(), "x"); }), ENOENT);
    EXPECT_EQ(posixCodeOf([&] { this->world.files().writeThrough(this->world.folder(), "x"); }), EISDIR);
    this->world.files().createFile(this->file(), 0640);
    this->world.files().writeThrough(this->file(), "a longer text");
    this->world.files().writeThrough(this->file(), "short");
    EXPECT_EQ(this->world.bytes(this->file()), "short");
    EXPECT_EQ(this->world.mode(this->file()), 0640U);
}

TYPED_TEST_P(PrivateFilesContract, RenamesOverAFileWithBytesAndPermissions) {
    const std::string other = this->world.folder() + "/other";
    EXPECT_EQ(posixCodeOf([&] { this->world.files().rename(other, this->file()); }), ENOENT);
    this->world.files().writeAtomically(this->file(), "old");
    this->world.files().createFile(other, 0640);
    this->world.files().writeThrough(other, "new");
    this->world.files().rename(other, this->file());
    EXPECT_EQ(this->world.bytes(this->file()), "new");
    EXPECT_EQ(this->world.mode(this->file()), 0640U);
    EXPECT_FALSE(this->world.files().exists(other));
    this->world.files().createDirectories(this->world.folder() + "/inner", 0700);
    EXPECT_EQ(posixCodeOf([&] { this->world.files().rename(this->file(), this->world.folder() + "/inner"); }), EISDIR);
    EXPECT_EQ(this->world.bytes(this->file()), "new");
}

TYPED_TEST_P(PrivateFilesContract, RemovesAFileAndNoFolder) {
    this->world.files().writeAtomically(this->file(), "x");
    this->world.files().removeFile(this->file());
    EXPECT_FALSE(this->world.files().exists(this->file()));
    EXPECT_EQ(posixCodeOf([&] { this->world.files().removeFile(this->file()); }), ENOENT);
    EXPECT_EQ(posixCodeOf([&] { this->world.files().removeFile(this->world.folder()); }), EISDIR);
}

REGISTER_TYPED_TEST_SUITE_P(PrivateFilesContract, CreatesFoldersAndIsContentWithExistingOnes,
                            AFileInAFoldersPlaceIsRefused, WritesReplacesAndAppends, AppendingNeedsAFile,
                            SetsPermissions, CreatesAnEmptyFileOnlyWhereNothingIs, WritesThroughToAFileThatIsThere,
                            RenamesOverAFileWithBytesAndPermissions, RemovesAFileAndNoFolder);

} // namespace vesk::test
