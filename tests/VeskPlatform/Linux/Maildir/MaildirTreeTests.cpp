#include "VeskPlatform/Linux/Maildir/MaildirTree.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace vesk::maildir {
namespace {

namespace fs = std::filesystem;
using Lines = std::vector<std::string>;

class MaildirTree : public testing::Test {
protected:
    test::TemporaryFolder folder;
    const std::string root = folder / "mail";
    Lines unreadable;

    MaildirTree() { fs::create_directories(root); }

    void maildir(const std::string& name) const {
        for (const char* part : {"cur", "new", "tmp"}) fs::create_directories(fs::path(root) / name / part);
    }
    void maildirs(const Lines& names) const {
        for (const std::string& name : names) maildir(name);
    }
    /// Each folder as "account|name", with a star for an inbox.
    Lines found() {
        const auto unread = [this](const std::string& path, int errnoValue) {
            unreadable.push_back(fs::path(path).filename().string() + " " + std::to_string(errnoValue));
        };
        Lines result;
        for (const MailFolder& each : findMailFolders(root, unread, [] {}))
            result.push_back(each.account + "|" + each.name + (each.isInbox ? "*" : ""));
        return result;
    }
};

TEST_F(MaildirTree, AnEmptyRootHasNothing) { EXPECT_EQ(found(), Lines{}); }

TEST_F(MaildirTree, AMissingRootIsAnError) {
    fs::remove(root);
    EXPECT_THROW(found(), PosixError);
}

TEST_F(MaildirTree, TheRootMayBeTheAccount) {
    maildirs({"", ".Sent", ".Work.Plans"});
    EXPECT_EQ(found(), (Lines{"mail|INBOX*", "mail|Sent", "mail|Work/Plans"}));
}

TEST_F(MaildirTree, TheInboxIsKnownInAnyCase) {
    maildirs({"a/Inbox", "a/Sent", "b/inbox", "c/INBOX", "c/Inbox"});
    EXPECT_EQ(found(), (Lines{"a|INBOX*", "a|Sent", "b|INBOX*", "c|INBOX*", "c|Inbox"}));
}

TEST_F(MaildirTree, ARootWithAnInboxIsTheAccount) {
    maildirs({"INBOX", "Archive", "Lists/Build"});
    EXPECT_EQ(found(), (Lines{"mail|INBOX*", "mail|Archive", "mail|Lists/Build"}));
}

TEST_F(MaildirTree, FoldersThatHoldMailAreAccounts) {
    maildirs({"work/INBOX", "work/Sent", "home", "home/.Old.Letters", "home/Plain"});
    fs::create_directories(fs::path(root) / "empty");
    EXPECT_EQ(found(), (Lines{"home|INBOX*", "home|Old/Letters", "home|Plain", "work|INBOX*", "work|Sent"}));
}

TEST_F(MaildirTree, AnInboxBelowGoesBeforeTheAccountsOwnMessages) {
    maildirs({"home", "home/INBOX"});
    EXPECT_EQ(found(), (Lines{"home|INBOX*", "home|home"}));
}

TEST_F(MaildirTree, AnAccountBesideTheRootsOwnMailStaysOne) {
    maildirs({"", "Archive", "work/INBOX", "work/Sent"});
    EXPECT_EQ(found(), (Lines{"mail|INBOX*", "mail|Archive", "work|INBOX*", "work|Sent"}));
}

TEST_F(MaildirTree, NestedLayoutsNameTheirWay) {
    maildirs({"home/INBOX", "home/A/B/C", "home/A"});
    EXPECT_EQ(found(), (Lines{"home|INBOX*", "home|A", "home|A/B/C"}));
}

TEST_F(MaildirTree, ItTakesCurAndNewToBeAMaildir) {
    fs::create_directories(fs::path(root) / "home/half/cur");
    maildir("home/INBOX");
    EXPECT_EQ(found(), (Lines{"home|INBOX*"}));
}

TEST_F(MaildirTree, OtherHiddenFoldersArePassedOver) {
    maildirs({"home/INBOX", ".notmuch/xapian", "home/.git/INBOX"});
    EXPECT_EQ(found(), (Lines{"home|INBOX*"}));
}

TEST_F(MaildirTree, FoldersInsideMessagesPartsAreNone) {
    maildirs({"home/INBOX", "home/INBOX/cur/Odd"});
    EXPECT_EQ(found(), (Lines{"home|INBOX*"}));
}

TEST_F(MaildirTree, LinksThatLoopEnd) {
    maildirs({"home/INBOX", "home/Sub"});
    fs::create_directory_symlink("..", fs::path(root) / "home/Sub/up");
    fs::create_directory_symlink(".", fs::path(root) / "home/INBOX/self");
    fs::create_directory_symlink("nowhere", fs::path(root) / "home/dangling");
    EXPECT_EQ(found(), (Lines{"home|INBOX*", "home|Sub"}));
}

TEST_F(MaildirTree, AFolderIsListedOnceUnderItsOwnName) {
    maildirs({"home/INBOX", "home/Sub"});
    fs::create_directory_symlink("Sub", fs::path(root) / "home/Alias");
    EXPECT_EQ(found(), (Lines{"home|INBOX*", "home|Sub"}));
}

TEST_F(MaildirTree, LinksToMailElsewhereCount) {
    maildirs({"home/INBOX"});
    for (const char* part : {"cur", "new"}) fs::create_directories(fs::path(folder / "elsewhere") / part);
    fs::create_directory_symlink(folder / "elsewhere", fs::path(root) / "home/Linked");
    EXPECT_EQ(found(), (Lines{"home|INBOX*", "home|Linked"}));
}

TEST_F(MaildirTree, FoldersThatCannotBeReadArePassedOver) {
    maildirs({"home/INBOX", "home/Closed", "closed/INBOX"});
    for (const char* name : {"home/Closed", "closed"}) fs::permissions(fs::path(root) / name, fs::perms::none);
    const test::WithoutPrivileges ordinary;
    EXPECT_EQ(found(), (Lines{"home|INBOX*"}));
    EXPECT_EQ(unreadable, (Lines{"closed 13", "Closed 13"}));
    fs::permissions(root, fs::perms::none);
    EXPECT_THROW(found(), PosixError);
    for (const char* name : {"", "home/Closed", "closed"}) fs::permissions(fs::path(root) / name, fs::perms::owner_all);
}

TEST_F(MaildirTree, NamesAreRepaired) {
    maildirs({"home/INBOX", "home/.A\xFF"});
    EXPECT_EQ(found(), (Lines{"home|INBOX*", "home|A\uFFFD"}));
}

} // namespace
} // namespace vesk::maildir
