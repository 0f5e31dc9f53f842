#include "VeskPlatform/Linux/Vcard/VcardContactStore.hpp"

#include "VeskPlatform/Linux/Vcard/IndexedBook.hpp"
#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/OnThreads.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
namespace fs = std::filesystem;

std::string card(const std::string& lines) { return "BEGIN:VCARD\nVERSION:3.0\n" + lines + "END:VCARD\n"; }
std::string named(const std::string& uid, const std::string& name) {
    return card("UID:" + uid + "\nFN:" + name + "\nN:;" + name + ";;;\n");
}

struct VcardContactStoreTests : testing::Test {
    TemporaryFolder folder;
    FakeClock clock;
    std::vector<std::string> logged;

    /// The clock stands far behind every change of a file here, so that indexes trust them.
    VcardContactStoreTests() {
        clock.time = floor<std::chrono::days>(std::chrono::system_clock::now()) + std::chrono::days(400);
    }

    std::string root() const { return folder / "contacts"; }
    std::string write(const std::string& name, const std::string& bytes) const {
        return folder.write("contacts/" + name, bytes);
    }
    std::string read(const std::string& name) const { return folder.read("contacts/" + name); }
    VcardContactStore store() {
        return {{root(), folder / "cache", "DE", [this](const std::string& line) { logged.push_back(line); }}, clock};
    }
    std::vector<ContactCard> all() {
        std::vector<ContactCard> contacts;
        store().forEachContact([&](const ContactCard& contact) { contacts.push_back(contact); });
        return contacts;
    }
    std::vector<std::string> identifiers() {
        std::vector<std::string> result;
        for (const ContactCard& contact : all()) result.push_back(contact.identifier);
        return result;
    }
    std::vector<std::string> names() {
        std::vector<std::string> result;
        for (const ContactCard& contact : all()) result.push_back(contact.givenName);
        return result;
    }
    std::vector<std::string> entries(const std::string& name) const {
        std::vector<std::string> result;
        for (const auto& entry : fs::directory_iterator(root() + "/" + name)) result.push_back(entry.path().filename());
        std::ranges::sort(result);
        return result;
    }
};

// ---- Books

TEST_F(VcardContactStoreTests, EachFolderOfCardsIsABook) {
    write("friends/a.vcf", named("a", "Anna"));
    write("account/work/b.vcf", named("b", "Bert"));
    write("account/.hidden/c.vcf", named("c", "Cher"));
    write("account/work/deeper/d.vcf", named("d", "Dana"));
    EXPECT_THAT(identifiers(), ElementsAre("b", "a"));
}

TEST_F(VcardContactStoreTests, TheRootIsABookWhereItHoldsCards) {
    write("a.VCF", named("a", "Anna"));
    write("friends/b.vcf", named("b", "Bert"));
    EXPECT_THAT(identifiers(), ElementsAre("a", "b"));
}

TEST_F(VcardContactStoreTests, CardsComeByFileNameAndPlace) {
    write("home/b.vcf", named("b1", "Bert") + named("b2", "Bob"));
    write("home/a.vcf", named("z", "Zoe"));
    EXPECT_THAT(identifiers(), ElementsAre("z", "b1", "b2"));
}

TEST_F(VcardContactStoreTests, WithoutAUidThePathIsTheIdentifier) {
    write("home/a.vcf", card("FN:One\n") + card("FN:Two\nUID:two\n") + card("FN:Three\n"));
    write("x.vcf", card("FN:Four\nUID:\n"));
    EXPECT_THAT(identifiers(), ElementsAre("x.vcf", "home/a.vcf", "two", "home/a.vcf#3"));
    EXPECT_EQ(store().contact("home/a.vcf#3").givenName, "Three");
}

TEST_F(VcardContactStoreTests, OfSeveralCardsWithOneUidTheFirstHasIt) {
    write("home/a.vcf", named("same", "Anna"));
    write("home/b.vcf", named("same", "Bert"));
    EXPECT_THAT(identifiers(), ElementsAre("same", "home/b.vcf"));
    ContactCard bert = store().contact("home/b.vcf");
    EXPECT_EQ(bert.givenName, "Bert");
    bert.jobTitle = "Cook";
    store().update(bert);
    EXPECT_THAT(read("home/b.vcf"), HasSubstr("TITLE:Cook"));
    EXPECT_EQ(read("home/a.vcf"), named("same", "Anna"));
}

TEST_F(VcardContactStoreTests, ListsOfPeopleAreNoContacts) {
    write("home/a.vcf", named("a", "Anna") + card("UID:g1\nFN:Friends\nX-ADDRESSBOOKSERVER-KIND:group\n")
                            + card("UID:g2\nFN:Team\nKIND: Group\n") + card("UID:b\nFN:Bert\nKIND:individual\n"));
    EXPECT_THAT(identifiers(), ElementsAre("a", "b"));
    EXPECT_THAT(identifiers(), ElementsAre("a", "b"));
}

TEST_F(VcardContactStoreTests, BadFilesAreCountedAndPassedOver) {
    write("home/a.vcf", named("a", "Anna"));
    write("home/b.vcf", "no card at all");
    write("home/c.vcf", named("c", "Cher") + "BEGIN:VCARD\nFN:Cut");
    fs::create_directory(root() + "/home/folder.vcf");
    EXPECT_THAT(identifiers(), ElementsAre("a", "c"));
    EXPECT_THAT(logged, ElementsAre("contact-store files passed-over kind=damaged count=2"));
}

TEST_F(VcardContactStoreTests, AFileOfTooManyBytesIsDamaged) {
    fs::resize_file(write("home/a.vcf", named("a", "Anna")), vcard::maximumCardFileSize + 1);
    EXPECT_TRUE(identifiers().empty());
    EXPECT_THAT(logged, ElementsAre("contact-store files passed-over kind=damaged count=1"));
}

TEST_F(VcardContactStoreTests, NamesThatAreNotUtf8AreRepairedInIdentifiers) {
    write("home/\xff.vcf", card("FN:Anna\n"));
    EXPECT_THAT(identifiers(), ElementsAre("home/\ufffd.vcf"));
    ContactCard anna = store().contact("home/\ufffd.vcf");
    anna.jobTitle = "Cook";
    store().update(anna);
    EXPECT_THAT(read("home/\xff.vcf"), HasSubstr("TITLE:Cook"));
}

TEST_F(VcardContactStoreTests, NamesThatAreRepairedAlikeDoNotMeanTheSameContact) {
    write("home/\xfe.vcf", card("FN:Anna\n") + card("FN:Bert\n"));
    write("home/\xff.vcf", card("FN:Cher\n") + card("FN:Dana\n"));
    EXPECT_THAT(identifiers(),
                ElementsAre("home/\ufffd.vcf", "home/\ufffd.vcf#2", "home/\ufffd.vcf (2)", "home/\ufffd.vcf#2 (2)"));
    ContactCard dana = store().contact("home/\ufffd.vcf#2 (2)");
    dana.jobTitle = "Cook";
    store().update(dana);
    EXPECT_EQ(read("home/\xfe.vcf"), card("FN:Anna\n") + card("FN:Bert\n"));
    EXPECT_EQ(read("home/\xff.vcf"), card("FN:Cher\n") + card("FN:Dana\nTITLE:Cook\n"));
}

// ---- The index

TEST_F(VcardContactStoreTests, AWarmIndexShowsWhatTheFilesHold) {
    write("home/a.vcf", named("a", "Anna"));
    write("home/b.vcf", named("b", "Bert"));
    EXPECT_THAT(names(), ElementsAre("Anna", "Bert"));
    const std::vector<ContactCard> cold = all();
    EXPECT_EQ(all(), cold);
    write("home/a.vcf", named("a", "Anke")); // in place, of the same size
    EXPECT_THAT(names(), ElementsAre("Anke", "Bert"));
    fs::remove(root() + "/home/a.vcf");
    EXPECT_THAT(names(), ElementsAre("Bert"));
    write("home/0.vcf", named("0", "Otto"));
    fs::rename(root() + "/home/b.vcf", root() + "/home/a.vcf");
    EXPECT_THAT(names(), ElementsAre("Otto", "Bert"));
}

TEST_F(VcardContactStoreTests, AChangeOfPermissionsIsAChangeOfTheFile) {
    write("home/a.vcf", named("a", "Anna"));
    names();
    const WithoutPrivileges reduced;
    fs::permissions(root() + "/home/a.vcf", fs::perms::none);
    EXPECT_TRUE(names().empty());
    fs::permissions(root() + "/home/a.vcf", fs::perms::owner_all);
    EXPECT_THAT(names(), ElementsAre("Anna"));
}

TEST_F(VcardContactStoreTests, AFileThatWasJustWrittenIsNotTrusted) {
    const fs::path path = write("home/a.vcf", named("a", "Anna"));
    fs::permissions(path, fs::perms::none);
    if (!std::ifstream(path)) GTEST_SKIP() << "only a privileged user tells the index from the file";
    const Instant later = clock.time;
    clock.time = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now());
    for (const bool isSettled : {false, true}) {
        if (isSettled) clock.time = later;
        EXPECT_THAT(names(), ElementsAre("Anna"));
        const WithoutPrivileges reduced;
        EXPECT_EQ(names().size(), isSettled ? 1U : 0U);
    }
}

TEST_F(VcardContactStoreTests, AFileThatCouldNotBeReadIsTriedAgain) {
    const fs::path path = write("home/a.vcf", named("a", "Anna"));
    fs::permissions(path, fs::perms::none);
    if (!std::ifstream(path)) GTEST_SKIP() << "only a privileged user can read the file without a change of it";
    {
        const WithoutPrivileges reduced;
        EXPECT_TRUE(names().empty());
    }
    EXPECT_THAT(names(), ElementsAre("Anna"));
}

TEST_F(VcardContactStoreTests, ADamagedIndexIsMadeAgain) {
    write("home/a.vcf", named("a", "Anna"));
    names();
    folder.write("cache/contacts.sqlite", "nonsense");
    EXPECT_THAT(names(), ElementsAre("Anna"));
    EXPECT_THAT(names(), ElementsAre("Anna"));
}

// ---- New contacts

TEST_F(VcardContactStoreTests, ANewContactGoesToTheFirstWritableBook) {
    write("a/a.vcf", named("a", "Anna"));
    write("b/b.vcf", named("b", "Bert"));
    const WithoutPrivileges reduced;
    fs::permissions(root() + "/a", fs::perms::owner_read | fs::perms::owner_exec);
    const std::string identifier = store().add({}).identifier;
    EXPECT_THAT(entries("b"), testing::Contains(identifier + ".vcf"));
    fs::permissions(root() + "/a", fs::perms::owner_all);
}

TEST_F(VcardContactStoreTests, WithoutABookOneIsMade) {
    const std::string identifier = store().add({}).identifier;
    EXPECT_THAT(entries("default"), ElementsAre(identifier + ".vcf"));
    EXPECT_THAT(identifiers(), ElementsAre(identifier));
}

TEST_F(VcardContactStoreTests, WritersThatMakeTheFirstBookTogetherShareIt) {
    constexpr int rounds = 10, writers = 8;
    for (int round = 0; round < rounds; ++round) {
        fs::remove_all(root());
        onThreads(writers, [&](std::size_t) {
            FakeClock own;
            VcardContactStore opened({root(), "", "DE", [](const std::string&) {}}, own);
            EXPECT_NO_THROW(opened.add({}));
        });
        EXPECT_EQ(entries("default").size(), std::size_t{writers});
        EXPECT_EQ(identifiers().size(), std::size_t{writers});
    }
}

TEST_F(VcardContactStoreTests, ABookThatRefusesFailsAndLeavesNothing) {
    write("default/a.vcf", named("a", "Anna"));
    const WithoutPrivileges reduced;
    fs::permissions(root() + "/default", fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_THROW(store().add({}), PosixError);
    ContactCard anna = store().contact("a");
    anna.jobTitle = "Cook";
    EXPECT_THROW(store().update(anna), PosixError);
    fs::permissions(root() + "/default", fs::perms::owner_all);
    EXPECT_THAT(entries("default"), ElementsAre("a.vcf"));
    EXPECT_EQ(read("default/a.vcf"), named("a", "Anna"));
}

TEST_F(VcardContactStoreTests, AnAccountIsNotMadeABook) {
    write("default/work/a.vcf", named("a", "Anna"));
    const WithoutPrivileges reduced;
    fs::permissions(root() + "/default/work", fs::perms::owner_read | fs::perms::owner_exec);
    EXPECT_THROW(store().add({}), PosixError);
    fs::permissions(root() + "/default/work", fs::perms::owner_all);
    EXPECT_THAT(entries("default"), ElementsAre("work"));
}

// ---- Changed contacts

TEST_F(VcardContactStoreTests, AListOfPeopleIsNotChangedForItsMember) {
    const std::string list = card("UID:same\nFN:Friends\nKIND:group\n");
    write("home/a.vcf", list + named("same", "Anna"));
    ContactCard anna = store().contact("same");
    anna.jobTitle = "Cook";
    EXPECT_EQ(store().update(anna).givenName, "Anna");
    EXPECT_THAT(read("home/a.vcf"), testing::StartsWith(list));
}

const std::string rich = "BEGIN:VCARD\r\nVERSION:3.0\r\nUID:rich\r\nN:Schmidt;Anna;;;\r\nFN:Anna Schmidt\r\n"
                         "item1.TEL;type=pref:1\r\nitem1.X-ABLabel:Boat\r\nPHOTO;ENCODING=b;TYPE=JPEG:/9j/4AAQSkZJ\r\n"
                         " RgABAQAAAQABAAD\r\nX-CUSTOM;P=\"a,b\":kept\r\nNOTE:secret\r\nEND:VCARD\r\n";

TEST_F(VcardContactStoreTests, AChangeTouchesNothingElse) {
    write("home/all.vcf", named("a", "Anna") + rich + named("z", "Zoe"));
    fs::permissions(root() + "/home/all.vcf", fs::perms(0640));
    VcardContactStore opened = store();
    ContactCard anna = opened.contact("rich");
    anna.phoneNumbers.push_back({contactLabel::mobile, "2"});
    opened.update(anna);
    std::string text = read("home/all.vcf");
    const std::string added = "TEL;TYPE=cell:2\r\n";
    ASSERT_NE(text.find(added), std::string::npos) << text;
    text.erase(text.find(added), added.size());
    EXPECT_EQ(text, named("a", "Anna") + rich + named("z", "Zoe"));
    EXPECT_EQ(folder.mode("contacts/home/all.vcf"), 0640U);
    EXPECT_THAT(entries("home"), ElementsAre("all.vcf"));
}

TEST_F(VcardContactStoreTests, NeitherSideOfAConcurrentChangeIsLost) {
    write("home/a.vcf", rich);
    VcardContactStore opened = store();
    ContactCard anna = opened.contact("rich");
    std::string meanwhile = rich;
    meanwhile.insert(meanwhile.find("NOTE"), "TEL:theirs\r\nTITLE:Theirs\r\n");
    write("home/a.vcf", meanwhile);
    anna.organizationName = "Ours";
    anna.phoneNumbers.push_back({contactLabel::mobile, "ours"});
    const ContactCard saved = opened.update(anna);
    EXPECT_EQ(saved.jobTitle, "Theirs");
    EXPECT_EQ(saved.organizationName, "Ours");
    EXPECT_EQ(saved.phoneNumbers.size(), 3U);
    EXPECT_EQ(store().contact("rich"), saved);
}

TEST_F(VcardContactStoreTests, AFileThatWasRenamedMeanwhileIsFound) {
    write("home/a.vcf", rich);
    VcardContactStore opened = store();
    ContactCard anna = opened.contact("rich");
    fs::rename(root() + "/home/a.vcf", root() + "/home/b.vcf");
    anna.jobTitle = "Cook";
    EXPECT_EQ(opened.update(anna).jobTitle, "Cook");
    EXPECT_THAT(read("home/b.vcf"), HasSubstr("TITLE:Cook"));
}

TEST_F(VcardContactStoreTests, ACardKnownByItsPlaceIsNotTakenForAnother) {
    write("home/a.vcf", card("FN:Anna\n") + card("FN:Bert\n"));
    VcardContactStore opened = store();
    ContactCard bert = opened.contact("home/a.vcf#2");
    const std::string meanwhile = card("FN:Zoe\n") + card("FN:Anna\n") + card("FN:Bert\n");
    write("home/a.vcf", meanwhile);
    bert.jobTitle = "Cook";
    EXPECT_THROW(opened.update(bert), ErrorRecord);
    EXPECT_EQ(read("home/a.vcf"), meanwhile);
}

TEST_F(VcardContactStoreTests, EachPartOfANameTellsPeopleApart) {
    const std::string person = card("N:Schmidt;Anna;Maria;;\nNICKNAME:Anni\n");
    for (const std::string& other :
         {card("N:Schulz;Anna;Maria;;\nNICKNAME:Anni\n"), card("N:Schmidt;Anke;Maria;;\nNICKNAME:Anni\n"),
          card("N:Schmidt;Anna;Marie;;\nNICKNAME:Anni\n"), card("N:Schmidt;Anna;Maria;;\nNICKNAME:Anna\n")}) {
        write("home/a.vcf", person);
        VcardContactStore opened = store();
        ContactCard anna = opened.contact("home/a.vcf");
        write("home/a.vcf", other);
        anna.jobTitle = "Cook";
        EXPECT_THROW(opened.update(anna), ErrorRecord);
        EXPECT_EQ(read("home/a.vcf"), other);
    }
}

TEST_F(VcardContactStoreTests, AChangeOfNothingWritesNothing) {
    write("home/a.vcf", rich);
    const auto longAgo = fs::file_time_type::clock::now() - std::chrono::hours(1000);
    fs::last_write_time(root() + "/home/a.vcf", longAgo);
    const ContactCard anna = store().contact("rich");
    EXPECT_EQ(store().update(anna), anna);
    EXPECT_EQ(fs::last_write_time(root() + "/home/a.vcf"), longAgo);
}

TEST_F(VcardContactStoreTests, ARemovedContactCannotBeChanged) {
    write("home/a.vcf", rich);
    VcardContactStore opened = store();
    ContactCard anna = opened.contact("rich");
    fs::remove(root() + "/home/a.vcf");
    anna.jobTitle = "Cook";
    try {
        opened.update(anna);
        FAIL();
    } catch (const ErrorRecord& error) {
        EXPECT_EQ(error.description(), "There is no contact with the identifier rich.");
    }
}

TEST_F(VcardContactStoreTests, ManyWritersLoseNothing) {
    write("home/a.vcf", rich);
    constexpr int writers = 8;
    onThreads(writers, [&](std::size_t i) {
        FakeClock own;
        VcardContactStore opened({root(), "", "DE", [](const std::string&) {}}, own);
        ContactCard anna = opened.contact("rich");
        anna.phoneNumbers.push_back({contactLabel::mobile, "writer " + std::to_string(i)});
        for (bool saved = false; !saved;) {
            try {
                opened.update(anna);
                saved = true;
            } catch (const ErrorRecord& busy) {
                ASSERT_EQ(busy.code(), 409);
            }
        }
    });
    EXPECT_EQ(store().contact("rich").phoneNumbers.size(), 1U + writers);
    EXPECT_THAT(entries("home"), ElementsAre("a.vcf"));
}

} // namespace
} // namespace vesk::test
