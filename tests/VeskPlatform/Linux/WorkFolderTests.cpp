#include "VeskPlatform/Linux/WorkFolder.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <cstdlib>
#include <gtest/gtest.h>
#include <memory>
#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {
namespace {

TEST(WorkFolder, IsPrivateAndGoesWithItsObject) {
    const TemporaryFolder parent;
    {
        const WorkFolder folder(parent.path(), "work-", "1");
        EXPECT_EQ(folder.path(), parent / "work-1");
        EXPECT_EQ(parent.mode("work-1"), 0700U);
        parent.write("work-1/sub/file", "x");
    }
    EXPECT_TRUE(std::filesystem::is_empty(parent.path()));
}

TEST(WorkFolder, WhatAKilledRunLeftIsRemovedByTheNext) {
    const TemporaryFolder parent;
    const pid_t child = ::fork();
    if (child == 0) {
        const WorkFolder folder(parent.path(), "work-", "killed");
        ::kill(::getpid(), SIGKILL);
    }
    ::waitpid(child, nullptr, 0);
    ASSERT_TRUE(parent.exists("work-killed"));
    parent.write("other-1/file", "x");
    const WorkFolder next(parent.path(), "work-", "next");
    EXPECT_FALSE(parent.exists("work-killed"));
    EXPECT_TRUE(parent.exists("other-1/file"));
}

TEST(WorkFolder, OneThatSomebodyHoldsStays) {
    const TemporaryFolder parent;
    const WorkFolder first(parent.path(), "work-", "1"), second(parent.path(), "work-", "2");
    EXPECT_TRUE(parent.exists("work-1"));
}

TEST(WorkFolder, ALinkOfTheNameIsLeftAlone) {
    const TemporaryFolder parent;
    parent.write("precious/file", "x");
    std::filesystem::create_symlink(parent / "precious", parent / "work-link");
    const WorkFolder folder(parent.path(), "work-", "1");
    EXPECT_TRUE(parent.exists("precious/file"));
}

TEST(WorkFolder, AFolderThatCannotBeMadeIsAnError) {
    const TemporaryFolder parent;
    EXPECT_THROW(WorkFolder(parent / "none", "work-", "1"), PosixError);
    const WorkFolder first(parent.path(), "work-", "1");
    EXPECT_THROW(WorkFolder(parent.path(), "work-", "1"), PosixError);
    EXPECT_TRUE(parent.exists("work-1"));
}

TEST(WorkFolder, TheSystemsFolderIsTheOneThatTmpdirNames) {
    const TemporaryFolder folder;
    const char* before = ::getenv("TMPDIR");
    const std::string kept = before != nullptr ? before : "";
    ::setenv("TMPDIR", folder.path().c_str(), 1);
    EXPECT_EQ(temporaryFolder(), folder.path());
    for (const char* useless : {"relative", "", "/nowhere/at/all"}) {
        ::setenv("TMPDIR", useless, 1);
        EXPECT_EQ(temporaryFolder(), "/tmp");
    }
    before != nullptr ? ::setenv("TMPDIR", kept.c_str(), 1) : ::unsetenv("TMPDIR");
}

} // namespace
} // namespace vesk::test
