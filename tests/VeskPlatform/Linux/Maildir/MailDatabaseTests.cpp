#include "VeskPlatform/Linux/Maildir/MailDatabase.hpp"

#include "VeskPlatform/Linux/Maildir/MaildirListing.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::maildir {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class MailDatabases : public testing::Test {
protected:
    test::TemporaryFolder folder;
    const std::string path = folder / "cache/mail.sqlite";
    MailDatabase database{path};
    const std::int64_t inbox = database.folder("/mail/INBOX").id;

    static IndexedMessage message(const std::string& unique, int second) {
        IndexedMessage made;
        made.unique = unique;
        made.date = Instant(std::chrono::seconds(second));
        made.subject = "Subject " + unique;
        made.sender = "Sender";
        return made;
    }
    void add(const IndexedMessage& added) {
        database.change([&] { database.add(inbox, added); });
    }
    std::vector<std::string> names(const std::vector<MailCandidate>& candidates) {
        std::vector<std::string> result;
        for (const MailCandidate& candidate : candidates)
            result.push_back(database.message(candidate.message).value_or(IndexedMessage{}).unique);
        return result;
    }
    std::vector<std::string> newest(MailView view, std::int64_t limit = 10) {
        return names(database.newest(inbox, view, limit));
    }
};

TEST_F(MailDatabases, ShowTheNewestOfAView) {
    for (int i = 0; i < 4; ++i) {
        IndexedMessage each = message(std::to_string(i), i == 3 ? 1 : i);
        each.isRead = i % 2 == 0;
        each.isFlagged = i < 2;
        add(each);
    }
    EXPECT_THAT(newest(MailView::recent), ElementsAre("2", "3", "1", "0"));
    EXPECT_THAT(newest(MailView::recent, 2), ElementsAre("2", "3"));
    EXPECT_THAT(newest(MailView::unread), ElementsAre("3", "1"));
    EXPECT_THAT(newest(MailView::flagged), ElementsAre("1", "0"));
}

TEST_F(MailDatabases, KeepAMessageOnce) {
    add(message("a", 1));
    add(message("a", 2));
    EXPECT_THAT(newest(MailView::recent), ElementsAre("a"));
    EXPECT_EQ(database.containing(MailField::subject, "subject a", Instant::min()).size(), 1U);
}

TEST_F(MailDatabases, FindTextsFromADateOn) {
    for (int i = 1; i < 4; ++i) add(message(std::to_string(i), i));
    const auto found = [&](MailField field, const char* text, int second) {
        return names(database.containing(field, text, Instant(std::chrono::seconds(second))));
    };
    EXPECT_THAT(found(MailField::subject, "subject", 2), ElementsAre("2", "3"));
    EXPECT_THAT(found(MailField::subject, "sender", 0), IsEmpty());
    EXPECT_THAT(found(MailField::sender, "send", 3), ElementsAre("3"));
    EXPECT_THAT(names(database.received(inbox, Instant(std::chrono::seconds(3)))), ElementsAre("3"));
}

TEST_F(MailDatabases, ForgetAMessageWhole) {
    add(message("a", 1));
    const std::int64_t id = database.newest(inbox, MailView::recent, 1).at(0).message;
    database.change([&] { database.keepPreview(id, "Text"); });
    EXPECT_EQ(database.preview(id), "Text");
    database.change([&] { database.remove(id); });
    EXPECT_EQ(database.preview(id), std::nullopt);
    EXPECT_EQ(database.message(id), std::nullopt);
    EXPECT_THAT(database.containing(MailField::subject, "", Instant::min()), IsEmpty());
}

TEST_F(MailDatabases, FollowAChangeOfFlags) {
    add(message("a", 1));
    const std::int64_t id = database.newest(inbox, MailView::recent, 1).at(0).message;
    database.change([&] { database.rename(id, {"a", ":2,FS", false}); });
    EXPECT_THAT(newest(MailView::unread), IsEmpty());
    EXPECT_THAT(newest(MailView::flagged), ElementsAre("a"));
    std::vector<std::string> files;
    database.forEachMessage(inbox, [&](std::int64_t, const MessageName& name) { files.push_back(name.file()); });
    EXPECT_THAT(files, ElementsAre("cur/a:2,FS"));
}

TEST_F(MailDatabases, KeepAStateOnlyWhereNobodyElseWrote) {
    MailDatabase other(path);
    database.change([&] { database.keepState(inbox, "first", 0); });
    EXPECT_EQ(other.folder("/mail/INBOX").state, "first");
    other.change([&] { other.touch(inbox); });
    EXPECT_EQ(database.folder("/mail/INBOX").state, "");
    database.change([&] { database.keepState(inbox, "second", 0); });
    EXPECT_EQ(database.folder("/mail/INBOX").state, "") << "the other has written meanwhile";
    database.change([&] { database.keepState(inbox, "second", 1); });
    EXPECT_EQ(other.folder("/mail/INBOX").state, "second");
}

TEST_F(MailDatabases, MayChangeWhatAnotherChangedSinceItWasRead) {
    MailDatabase other(path);
    database.folder("/mail/INBOX");
    other.change([&] { other.touch(inbox); });
    database.change([&] { database.touch(inbox); });
    EXPECT_EQ(other.folder("/mail/INBOX").changes, 2);
}

TEST_F(MailDatabases, UndoAChangeThatFails) {
    EXPECT_THROW(database.change([&] {
        database.add(inbox, message("a", 1));
        throw std::runtime_error("no more");
    }),
                 std::runtime_error);
    EXPECT_THAT(newest(MailView::recent), IsEmpty());
    add(message("b", 1));
    EXPECT_THAT(newest(MailView::recent), ElementsAre("b"));
}

TEST_F(MailDatabases, ForgetAFolderWhole) {
    add(message("a", 1));
    database.forgetFolder(inbox);
    EXPECT_THAT(database.folders(), IsEmpty());
    EXPECT_THAT(database.containing(MailField::subject, "", Instant::min()), IsEmpty());
}

TEST_F(MailDatabases, OfAnotherFormatAreOfNoUse) {
    const std::string otherPath = folder / "cache/other.sqlite";
    { MailDatabase made(otherPath); }
    SqliteConnection(otherPath, std::chrono::seconds(1)).run("PRAGMA user_version = 2");
    try {
        MailDatabase opened(otherPath);
        ADD_FAILURE() << "opened";
    } catch (const SqliteFailure& failure) {
        EXPECT_TRUE(failure.isOfNoUse());
    }
}

TEST_F(MailDatabases, AreNotMadeThroughALink) {
    std::filesystem::create_symlink(folder / "target", folder / "cache/linked.sqlite");
    EXPECT_THROW(MailDatabase(folder / "cache/linked.sqlite"), SqliteFailure);
    EXPECT_FALSE(folder.exists("target"));
}

TEST(MailDatabase, MayBeInMemory) {
    MailDatabase database("");
    EXPECT_EQ(database.folder("/mail").state, "");
    EXPECT_EQ(database.folders().size(), 1U);
}

} // namespace
} // namespace vesk::maildir
