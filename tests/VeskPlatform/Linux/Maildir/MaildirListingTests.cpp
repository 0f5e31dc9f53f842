#include "VeskPlatform/Linux/Maildir/MaildirListing.hpp"

#include "tests/support/TemporaryFolder.hpp"

#include <gtest/gtest.h>

namespace vesk::maildir {
namespace {

class MaildirListings : public testing::Test {
protected:
    test::TemporaryFolder folder;

    MaildirListings() {
        for (const char* part : {"cur", "new", "tmp"}) std::filesystem::create_directories(folder / part);
    }
    std::vector<std::string> files() const {
        std::vector<std::string> result;
        const MaildirListing listing(folder.path());
        for (const MessageName& name : listing.messages()) result.push_back(name.file());
        return result;
    }
};

TEST_F(MaildirListings, HoldNewAndSeenMessagesByName) {
    for (const char* file : {"cur/2:2,S", "new/1", "new/3:2,"}) folder.write(file, "x");
    EXPECT_EQ(files(), (std::vector<std::string>{"new/1", "cur/2:2,S", "new/3:2,"}));
}

TEST_F(MaildirListings, LeaveOutWhatIsNoMessage) {
    for (const char* file : {"tmp/1", "new/.hidden", "cur/.uidvalidity"}) folder.write(file, "x");
    std::filesystem::create_directories(folder / "cur/folder");
    EXPECT_TRUE(files().empty());
}

TEST_F(MaildirListings, HaveAMessageOnceThatIsInBothParts) {
    for (const char* file : {"new/1", "cur/1:2,S"}) folder.write(file, "x");
    EXPECT_EQ(files(), (std::vector<std::string>{"cur/1:2,S"}));
}

TEST_F(MaildirListings, HaveAnotherStateAfterEachChange) {
    const auto state = [&] { return folderState(folder.path()).text(); };
    std::string before = state();
    const auto changes = [&](const std::function<void()>& change) {
        // The file system's clock may stand still between two changes.
        for (const std::string earlier = before; state() == earlier;) change();
        before = state();
    };
    int count = 0;
    changes([&] { folder.write("new/" + std::to_string(++count), "x"); });
    bool isSeen = false;
    changes([&] {
        std::filesystem::rename(folder / (isSeen ? "cur/1:2,S" : "new/1"), folder / (isSeen ? "new/1" : "cur/1:2,S"));
        isSeen = !isSeen;
    });
    EXPECT_EQ(state(), before);
}

TEST_F(MaildirListings, AreSettledSomeTimeAfterTheLastChange) {
    FolderState state;
    state.newFiles.changed = 1'000'500'000'000;
    state.curFiles.changed = 2'000'500'000'000;
    const auto settledAt = [&](std::int64_t milliseconds) {
        return state.isSettled(Instant(std::chrono::milliseconds(milliseconds)));
    };
    EXPECT_FALSE(settledAt(2'000'599));
    EXPECT_TRUE(settledAt(2'000'600));
    state.newFiles.changed = 2'001'000'000'000; // whole seconds: a file system that counts coarsely
    EXPECT_FALSE(settledAt(2'003'999));
    EXPECT_TRUE(settledAt(2'004'000));
}

struct NameCase {
    const char* name;
    std::string file, unique;
    bool isRead, isFlagged;
};

class MaildirNames : public MaildirListings, public testing::WithParamInterface<NameCase> {};

TEST_P(MaildirNames, TellOfTheirMessage) {
    folder.write("cur/" + GetParam().file, "x");
    const MaildirListing listing(folder.path());
    ASSERT_EQ(listing.messages().size(), 1U);
    const MessageName& name = listing.messages().front();
    EXPECT_EQ(name.unique, GetParam().unique);
    EXPECT_EQ(name.isRead(), GetParam().isRead);
    EXPECT_EQ(name.isFlagged(), GetParam().isFlagged);
    EXPECT_EQ(name.file(), "cur/" + GetParam().file);
}

INSTANTIATE_TEST_SUITE_P(, MaildirNames,
                         testing::Values(NameCase{"noFlags", "1.a:2,", "1.a", false, false},
                                         NameCase{"bare", "1.a", "1.a", false, false},
                                         NameCase{"read", "1.a:2,RS", "1.a", true, false},
                                         NameCase{"flagged", "1.a:2,F", "1.a", false, true},
                                         NameCase{"both", "1.a,S=20,W=21:2,FSa", "1.a,S=20,W=21", true, true},
                                         NameCase{"experimental", "1.a:1,S", "1.a:1,S", false, false},
                                         NameCase{"twice", "1:2,F:2,S", "1:2,F", true, false}),
                         [](const auto& tested) { return std::string(tested.param.name); });

} // namespace
} // namespace vesk::maildir
