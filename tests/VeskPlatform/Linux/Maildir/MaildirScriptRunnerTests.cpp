#include "VeskPlatform/Linux/Maildir/MaildirScriptRunner.hpp"

#include "VeskPlatform/Linux/Maildir/MailDatabase.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "tests/VeskPlatform/Linux/Maildir/MailWorld.hpp"
#include "tests/support/DescriptorShortage.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/Sanitizers.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <stdexcept>
#include <sys/stat.h>

namespace vesk {
namespace {

using test::MailFolders;
using test::MailText;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
namespace fs = std::filesystem;

constexpr MailListQuestion recent{MailView::recent, 50}, unread{MailView::unread, 50}, flagged{MailView::flagged, 50};

MailFollowupQuestion bySubject(const std::string& text, std::int64_t limit = 50) {
    return {.cutoff = {}, .subjectFilter = text, .senderFilter = {}, .limit = limit};
}
MailFollowupQuestion bySender(const std::string& text, std::int64_t limit = 50) {
    return {.cutoff = {}, .subjectFilter = {}, .senderFilter = text, .limit = limit};
}
const MailFollowupQuestion inInbox{.cutoff = {}, .subjectFilter = {}, .senderFilter = {}, .limit = 50};

std::string dated(int minute) {
    return "Wed, 3 Jun 2026 12:" + std::string(minute < 10 ? "0" : "") + std::to_string(minute) + ":00 +0000";
}

class MaildirRunner : public testing::Test {
protected:
    MailFolders mail;
    int count = 0;

    /// A message a minute later than the one before, with a message id of its own.
    std::string deliver(const std::string& subject, const std::string& folder = "home/INBOX",
                        const std::string& flags = "") {
        const int number = ++count;
        return mail.write(
            folder + "/cur/" + std::to_string(number) + ":2," + flags,
            MailText().subject(subject).messageId(std::to_string(number) + "@x").date(dated(number)).bytes());
    }
};

TEST_F(MaildirRunner, ARowHasAllThatAMessageSays) {
    mail.write("home/INBOX/cur/1.a:2,F",
               MailText().subject("=?utf-8?q?Gr=C3=BC=C3=9Fe?=").body("One\r\ntwo\x1fthree").bytes());
    EXPECT_THAT(mail.rows(recent), ElementsAre(ElementsAre(
                                       "1.a", "1@example.org", "INBOX", "home", "Anna Beck <anna@example.org>", "Grüße",
                                       "Wednesday, June 3, 2026 at 2:00:00\u202fPM Central European Summer Time",
                                       "false", "true", "One two three ")));
}

TEST_F(MaildirRunner, TheDateIsInTheWordsOfTheLocale) {
    mail.options.locale = "de_DE";
    mail.options.timeZone = "UTC";
    deliver("Hello");
    EXPECT_THAT(mail.column(recent, 6), ElementsAre(HasSubstr("Mittwoch, 3. Juni 2026 um 12:01:00")));
}

TEST_F(MaildirRunner, NewMessagesAreUnread) {
    mail.write("home/INBOX/new/1", MailText().bytes());
    EXPECT_THAT(mail.column(unread, 0), ElementsAre("1"));
}

TEST_F(MaildirRunner, InboxesOfAllAccountsAreListedTogether) {
    for (const char* account : {"work", "home", "work"}) deliver(account, std::string(account) + "/INBOX");
    EXPECT_THAT(mail.column(recent, 3), ElementsAre("work", "home", "work"));
    EXPECT_THAT(mail.recent(2), ElementsAre("work", "home"));
}

TEST_F(MaildirRunner, WithoutADateTheFilesTimeCounts) {
    deliver("dated");
    const std::string path = mail.write("home/INBOX/cur/0:2,", MailText().subject("undated").date("").bytes());
    const utimbuf before{0, 1'000'000'000}, after{0, 2'000'000'000};
    ::utime(path.c_str(), &after);
    EXPECT_THAT(mail.recent(), ElementsAre("undated", "dated"));
    fs::remove_all(mail.options.cacheFolder);
    ::utime(path.c_str(), &before);
    EXPECT_THAT(mail.recent(), ElementsAre("dated", "undated"));
}

TEST_F(MaildirRunner, ChangesAreNoticed) {
    const std::string first = deliver("first");
    EXPECT_THAT(mail.recent(), ElementsAre("first"));
    deliver("second");
    EXPECT_THAT(mail.recent(), ElementsAre("second", "first"));
    fs::rename(first, first + "S");
    EXPECT_THAT(mail.subjects(unread), ElementsAre("second"));
    EXPECT_THAT(mail.column(recent, 7), ElementsAre("false", "true"));
    EXPECT_THAT(mail.subjects(flagged), IsEmpty());
    fs::rename(first + "S", first + "FS");
    EXPECT_THAT(mail.subjects(flagged), ElementsAre("first"));
    fs::remove(first + "FS");
    EXPECT_THAT(mail.recent(), ElementsAre("second"));
}

TEST_F(MaildirRunner, AFolderIsListedAgainWhereItsTimesCannotTellYet) {
    deliver("first");
    const auto state = [&] {
        maildir::MailDatabase database(mail.options.cacheFolder + "/mail.sqlite");
        return database.folder(mail.path("home/INBOX")).state;
    };
    const Instant later = std::exchange(mail.now, Instant{}); // all was written just now, as far as the runner knows
    EXPECT_THAT(mail.recent(), ElementsAre("first"));
    EXPECT_EQ(state(), "");
    mail.now = later;
    EXPECT_THAT(mail.recent(), ElementsAre("first"));
    EXPECT_NE(state(), "");
}

TEST_F(MaildirRunner, AWarmAnswerReadsNoMessage) {
    deliver("first");
    const auto rows = mail.rows(recent);
    mail.options.moduleFolder = "/nowhere";
    EXPECT_EQ(mail.rows(recent), rows);
    EXPECT_EQ(mail.rows(bySubject("first")), rows);
}

TEST_F(MaildirRunner, AMissingModuleNamesItsPackage) {
    deliver("first");
    mail.options.moduleFolder = "/nowhere";
    const auto outcome = mail.run(recent);
    ASSERT_TRUE(std::holds_alternative<MailScriptFailed>(outcome));
    EXPECT_THAT(*std::get<MailScriptFailed>(outcome).message, HasSubstr("install the package libgmime-3.0-0."));
}

TEST_F(MaildirRunner, WithoutMailThereIsAClearFailure) {
    for (const std::string& root : {std::string(), mail.folder / "none"}) {
        mail.options.root = root;
        for (const MailQuestion& question :
             {MailQuestion(recent), MailQuestion(inInbox), MailQuestion(MailProbeQuestion{})})
            EXPECT_EQ(mail.run(question),
                      MailScriptOutcome(MailScriptFailed{"There is no mail folder; set VESK_MAIL_DIR, "
                                                         "or put accounts into ~/Maildir."}));
    }
}

TEST_F(MaildirRunner, AnEmptyRootIsAnEmptyAnswer) {
    EXPECT_THAT(mail.rows(recent), IsEmpty());
    EXPECT_THAT(mail.rows(bySubject("x")), IsEmpty());
}

TEST_F(MaildirRunner, FiltersLookIntoEveryFolderWithoutCase) {
    deliver("Re: BUDGET");
    deliver("budget", "home/Archive");
    deliver("Grüße", "work/INBOX");
    deliver("ÄRGER", "work/.Old.Mail");
    EXPECT_THAT(mail.subjects(bySubject("budget")), ElementsAre("budget", "Re: BUDGET"));
    EXPECT_THAT(mail.subjects(bySubject("GRÜSSE")), IsEmpty());
    EXPECT_THAT(mail.subjects(bySubject("grüße")), ElementsAre("Grüße"));
    EXPECT_THAT(mail.subjects(bySubject("ärger")), ElementsAre("ÄRGER"));
    EXPECT_THAT(mail.column(bySubject("ärger"), 2), ElementsAre("Old/Mail"));
    EXPECT_EQ(mail.subjects(bySender("ANNA@")).size(), 4U);
    EXPECT_THAT(mail.subjects(inInbox), ElementsAre("Grüße", "Re: BUDGET"));
    auto both = bySubject("budget");
    both.senderFilter = "nobody";
    EXPECT_EQ(mail.subjects(both).size(), 2U) << "the subject alone decides";
}

TEST_F(MaildirRunner, OnlyLaterSecondsThanTheCutoffCount) {
    deliver("at");    // 12:01
    deliver("after"); // 12:02
    for (MailFollowupQuestion question : {bySubject("a"), bySender("anna"), inInbox}) {
        question.cutoff = test::instant(1'780'488'060);
        EXPECT_THAT(mail.subjects(question), ElementsAre("after"));
        question.cutoff = *question.cutoff - std::chrono::milliseconds(1);
        EXPECT_THAT(mail.subjects(question), ElementsAre("after", "at"));
        question.cutoff = test::instant(1'780'488'120) + std::chrono::milliseconds(999);
        EXPECT_THAT(mail.subjects(question), IsEmpty());
    }
}

TEST_F(MaildirRunner, CopiesAreSeenOnce) {
    const std::string copied = MailText().subject("copied").bytes(),
                      withoutId = MailText().subject("nameless").messageId("").bytes();
    for (const char* file : {"home/INBOX/cur/1:2,", "home/Archive/cur/2:2,"}) mail.write(file, copied);
    for (const char* file : {"home/INBOX/cur/3:2,", "home/Archive/cur/3:2,", "home/Archive/cur/4:2,"})
        mail.write(file, withoutId);
    EXPECT_THAT(mail.column(bySubject("copied"), 2), ElementsAre("INBOX"));
    EXPECT_THAT(mail.column(bySubject("nameless"), 0), testing::UnorderedElementsAre("3", "4"));
    EXPECT_EQ(mail.rows(bySender("anna", 2)).size(), 2U) << "the limit counts what is kept";
}

TEST_F(MaildirRunner, FoldersThatGoTakeTheirMessages) {
    deliver("kept");
    deliver("gone", "home/Old");
    EXPECT_EQ(mail.rows(bySender("anna")).size(), 2U);
    fs::remove_all(mail.path("home/Old"));
    EXPECT_THAT(mail.subjects(bySender("anna")), ElementsAre("kept"));
}

TEST_F(MaildirRunner, PreviewsOfHtmlAreText) {
    mail.write(
        "home/INBOX/cur/1:2,",
        "Content-Type: text/html; charset=utf-8\nSubject: x\n\n<style>p{}</style><p>Hello&nbsp;you</p><p>all</p>\n");
    EXPECT_THAT(mail.column(recent, 9), ElementsAre("Hello you all"));
}

TEST_F(MaildirRunner, PreviewsHave600CharactersAsPeopleCountThem) {
    const std::string family = "👩‍👩‍👧"; // one of them
    std::string body, expected;
    for (int i = 0; i < 601; ++i) (i < 600 ? expected : body) += family;
    mail.write("home/INBOX/cur/1:2,", "Content-Type: text/plain; charset=utf-8\n\n" + expected + body);
    EXPECT_THAT(mail.column(recent, 9), ElementsAre(expected));
}

TEST_F(MaildirRunner, TextBehindTheFirstWindowIsFoundInTime) {
    const std::string picture = "--b\nContent-Type: image/png\n\n" + std::string(600'000, 'x') + "\n";
    mail.write("home/INBOX/cur/1:2,", "Content-Type: multipart/mixed; boundary=b\n\n" + picture
                                          + "--b\nContent-Type: text/plain\n\nHello\n--b--\n");
    EXPECT_THAT(mail.column(recent, 9), ElementsAre("Hello"));
}

TEST_F(MaildirRunner, AHugeMessageIsNotReadWhole) {
    const std::string path = mail.write("home/INBOX/cur/1:2,", MailText().body("Hello").bytes());
    fs::resize_file(path, std::uintmax_t{200} * 1024 * 1024 * 1024); // a hole: reading it all would take minutes
    EXPECT_THAT(mail.column(recent, 5), ElementsAre("Hello"));
    EXPECT_THAT(mail.column(recent, 9), ElementsAre(testing::StartsWith("Hello ")));
}

TEST_F(MaildirRunner, WhatIsNoMessageFileIsPassedOver) {
    deliver("message");
    ::mkfifo(mail.path("home/INBOX/cur/pipe:2,").c_str(), 0600);
    fs::create_symlink("nowhere", mail.path("home/INBOX/cur/link:2,"));
    EXPECT_THAT(mail.recent(), ElementsAre("message"));
    EXPECT_THAT(mail.logged, IsEmpty());
}

TEST_F(MaildirRunner, AMessageThatCannotBeReadIsToldAndTriedAgain) {
    deliver("message");
    const fs::path place = mail.path("home/INBOX/cur/9:2,");
    fs::create_symlink(place, place);
    for (std::size_t runs = 1; runs < 3; ++runs) {
        EXPECT_THAT(mail.recent(), ElementsAre("message"));
        EXPECT_EQ(mail.logged, std::vector<std::string>(runs, "mail-store messages unreadable errno=40 count=1"));
    }
}

TEST_F(MaildirRunner, AFolderThatCannotBeListedIsPassedOver) {
    deliver("open");
    deliver("closed", "work/INBOX");
    const fs::path closed = mail.path("work/INBOX/cur");
    fs::permissions(closed, fs::perms::none);
    {
        const test::WithoutPrivileges ordinary;
        EXPECT_THAT(mail.recent(), ElementsAre("open"));
    }
    EXPECT_THAT(mail.logged, ElementsAre("mail-store folder unreadable errno=13"));
    fs::permissions(closed, fs::perms::owner_all);
    EXPECT_THAT(mail.recent(), ElementsAre("closed", "open"));
}

TEST_F(MaildirRunner, AShortageOfDescriptorsLeavesNothingOut) {
    SKIP_UNDER_SANITIZERS();
    deliver("first");
    deliver("second", "work/INBOX");
    const auto whole = mail.rows(recent);
    ASSERT_EQ(whole.size(), 2U);
    int failed = 0;
    constexpr int most = 12;
    for (int room = 0; room < most; ++room) {
        fs::remove_all(mail.options.cacheFolder);
        const test::DescriptorShortage shortage(room);
        try {
            EXPECT_EQ(mail.rows(recent), whole) << room;
        } catch (const std::runtime_error&) { // a failure says what is amiss
            ++failed;
        }
    }
    EXPECT_GT(failed, 0);
    EXPECT_LT(failed, most);
}

TEST_F(MaildirRunner, AnotherRootHasOtherMail) {
    deliver("first root");
    EXPECT_EQ(mail.rows(bySender("anna")).size(), 1U);
    mail.options.root = mail.folder / "mail2";
    mail.folder.write("mail2/home/cur/1:2,", MailText().subject("second root").bytes());
    fs::create_directories(mail.folder / "mail2/home/new");
    EXPECT_THAT(mail.subjects(bySender("anna")), ElementsAre("second root"));
    mail.options.root = mail.folder / "mail";
    EXPECT_THAT(mail.subjects(bySender("anna")), ElementsAre("first root"));
}

TEST_F(MaildirRunner, AMessageThatMovedSinceItWasListedIsFoundAgain) {
    const std::string path = deliver("moved");
    mail.rows(bySubject("nothing")); // the index knows it, but not its preview
    int calls = 0;
    mail.options.ticks = [&] {
        // The flags change just before the preview is read.
        if (++calls == 2) fs::rename(path, path + "S");
        return mail.ticks;
    };
    EXPECT_THAT(mail.rows(recent), ElementsAre(testing::AllOf(testing::Contains("moved"), testing::Contains("true"))));
}

TEST_F(MaildirRunner, AMessageThatVanishedSinceItWasListedIsGone) {
    deliver("kept");
    const std::string path = deliver("vanished");
    mail.rows(bySubject("nothing"));
    int calls = 0;
    mail.options.ticks = [&] {
        if (++calls >= 2) fs::remove(path);
        return mail.ticks;
    };
    EXPECT_THAT(mail.recent(), ElementsAre("kept"));
}

TEST_F(MaildirRunner, TheTimeLimitIsKept) {
    deliver("first");
    mail.options.ticks = [this] { return mail.ticks += std::chrono::seconds(10); };
    for (const MailQuestion& question :
         {MailQuestion(recent), MailQuestion(inInbox), MailQuestion(MailProbeQuestion{})})
        EXPECT_EQ(mail.run(question, std::chrono::seconds(8)),
                  MailScriptOutcome(MailScriptFailed{"Mail got an error: AppleEvent timed out."}));
}

TEST_F(MaildirRunner, TheTimeLimitIsKeptInATreeOfOtherFolders) {
    for (int i = 0; i < 200; ++i) fs::create_directories(mail.path("other/" + std::to_string(i)));
    mail.options.ticks = [this] { return mail.ticks += std::chrono::seconds(10); };
    EXPECT_EQ(mail.run(recent, std::chrono::seconds(8)),
              MailScriptOutcome(MailScriptFailed{"Mail got an error: AppleEvent timed out."}));
}

TEST_F(MaildirRunner, WhatWasReadBeforeTheTimeLimitIsKept) {
    constexpr int many = 2500;
    MailText text;
    for (int i = 0; i < many; ++i) {
        text.messageId(std::to_string(i));
        mail.write("home/INBOX/cur/" + std::to_string(i) + ":2,S", text.bytes());
    }
    int calls = 0, runs = 0;
    mail.options.ticks = [&] { return mail.ticks + std::chrono::seconds(++calls > 4 ? 60 : 0); };
    for (bool done = false; !done && runs < 10; ++runs) {
        calls = 0;
        done = std::holds_alternative<ScriptDescriptor>(mail.run(bySubject("nothing")));
    }
    mail.options.ticks = [this] { return mail.ticks; };
    EXPECT_GT(runs, 1) << "the first run is cut short";
    EXPECT_LT(runs, 10) << "each goes on where the last ended";
    EXPECT_EQ(mail.rows(bySubject("hello", many + 1)).size(), std::size_t{many});
}

class MaildirIndexFile : public MaildirRunner {
protected:
    const fs::path file = fs::path(mail.options.cacheFolder) / "mail.sqlite";
};

TEST_F(MaildirIndexFile, IsForTheUserAlone) {
    deliver("first");
    mail.recent();
    EXPECT_EQ(mail.folder.mode("cache/mail.sqlite"), 0600U);
}

TEST_F(MaildirIndexFile, IsMadeAnewWhereItIsDamaged) {
    deliver("first");
    mail.recent();
    for (const std::string& damage : {std::string("no database"), std::string(100'000, 'x')}) {
        mail.folder.write("cache/mail.sqlite", damage);
        EXPECT_THAT(mail.recent(), ElementsAre("first"));
        mail.options.moduleFolder = "/nowhere";
        EXPECT_THAT(mail.recent(), ElementsAre("first")) << "it is kept again";
        mail.options.moduleFolder = moduleFolderOf(runningExecutable());
    }
}

TEST_F(MaildirIndexFile, AnswersWhileAnotherWrites) {
    deliver("first");
    const auto rows = mail.rows(recent);
    SqliteConnection writer(file.string(), std::chrono::seconds(1));
    writer.run("BEGIN IMMEDIATE; DELETE FROM message");
    mail.options.moduleFolder = "/nowhere";
    EXPECT_EQ(mail.rows(recent), rows);
}

TEST_F(MaildirIndexFile, IsDoneWithoutWhereItCannotBeWritten) {
    deliver("first");
    mail.recent();
    deliver("second");
    fs::permissions(mail.options.cacheFolder, fs::perms::owner_read | fs::perms::owner_exec);
    fs::permissions(file, fs::perms::owner_read);
    {
        const test::WithoutPrivileges ordinary;
        EXPECT_THAT(mail.recent(), ElementsAre("second", "first"));
    }
    fs::permissions(mail.options.cacheFolder, fs::perms::owner_all);
}

TEST_F(MaildirIndexFile, IsDoneWithoutWhereItCannotBe) {
    deliver("first");
    mail.folder.write("file", "");
    fs::create_symlink("loop", mail.folder / "loop");
    const std::string tooLong = mail.folder / std::string(300, 'x');
    for (const std::string& folder : {std::string(), mail.folder / "file/cache", mail.folder / "loop", tooLong}) {
        mail.options.cacheFolder = folder;
        EXPECT_THAT(mail.recent(), ElementsAre("first")) << folder;
    }
    mail.options.cacheFolder = mail.folder / "linked";
    fs::create_directories(mail.options.cacheFolder);
    fs::create_directories(mail.options.cacheFolder + "/mail.sqlite");
    EXPECT_THAT(mail.recent(), ElementsAre("first"));
}

} // namespace
} // namespace vesk
