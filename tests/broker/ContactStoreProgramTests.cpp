// The built broker over address books.

#include "tests/broker/StoreProgram.hpp"
#include "tests/support/OnThreads.hpp"
#include "tests/support/Privileges.hpp"

#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sstream>

namespace vesk {
namespace {

using test::ProgramResult;
using test::ProgramRun;
using testing::HasSubstr;
using testing::Not;
namespace fs = std::filesystem;

std::string card(const std::string& lines) { return "BEGIN:VCARD\r\nVERSION:3.0\r\n" + lines + "END:VCARD\r\n"; }

std::size_t countOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; at += part.size()) ++count;
    return count;
}

class ContactStoreProgram : public test::StoreProgram {
protected:
    ContactStoreProgram() : StoreProgram("contacts", "VESK_CONTACTS_DIR", "contacts") {}

    std::string search(const std::string& query) const { return succeed({"contacts-search", "--query", query}); }
    std::string request(const std::string& json) const {
        const fs::path path = program.folder() / "request.json";
        std::ofstream(path) << json;
        return path.string();
    }
    std::string save(const std::string& json) const { return succeed({"contacts-save", "--request", request(json)}); }
};

TEST_F(ContactStoreProgram, AContactIsMadeFoundAndExtended) {
    EXPECT_THAT(search("anna"), HasSubstr("No Contacts matched the query."));
    EXPECT_FALSE(fs::exists(root));
    const std::string saved = save(R"({"name":"Anna Maria Schmidt","phones":[{"label":"Office","value":"0176 1"}]})");
    EXPECT_THAT(saved, HasSubstr("\"name\" : \"Anna Maria Schmidt\""));
    ASSERT_TRUE(fs::exists(root / "default"));
    const std::string id = fs::directory_iterator(root / "default")->path().stem();
    EXPECT_THAT(saved, HasSubstr("\"id\" : \"" + id + "\""));
    save(R"({"name":"ignored","targetId":")" + id + R"(","phones":[{"label":"Boat","value":"2"}],"note":"no"})");
    const std::string found = search("schmidt");
    EXPECT_THAT(found, HasSubstr("\"label\" : \"work\""));
    EXPECT_THAT(found, HasSubstr("\"label\" : \"Boat\""));
    EXPECT_THAT(found, Not(HasSubstr("ignored")));
    EXPECT_THAT(content(root / ("default/" + id + ".vcf")), Not(HasSubstr("NOTE")));
}

TEST_F(ContactStoreProgram, FoldingFollowsTheUsersLocale) {
    write("home/a.vcf", card("FN:M\u00fcller\r\n") + card("FN:ISPARTA\r\n"));
    EXPECT_THAT(search("MULLER"), HasSubstr("M\u00fcller"));
    EXPECT_THAT(search("isparta"), HasSubstr("ISPARTA"));
    program.environment["LC_ALL"] = "tr_TR.UTF-8";
    EXPECT_THAT(search("isparta"), Not(HasSubstr("ISPARTA")));
    EXPECT_THAT(search("\u0131sparta"), HasSubstr("ISPARTA"));
}

TEST_F(ContactStoreProgram, BadCardsHideNothing) {
    write("home/good.vcf", card("UID:good\r\nFN:Goodwin\r\n"));
    write("home/cut.vcf", card("FN:Goodwin in front\r\n") + "BEGIN:VCARD\r\nFN:Goodw");
    write("home/empty.vcf", "");
    write("home/nonsense.vcf", std::string("\0\xff\x01", 3));
    write("home/no-end.vcf", "BEGIN:VCARD\nFN:Goodwin without end\n");
    write("home/two-uids.vcf", card("UID:one\r\nUID:two\r\nFN:Goodwin twice\r\n"));
    write("home/long.vcf", card("FN:Goodwin long\r\nX-LONG:" + std::string(10'000'000, 'x') + "\r\n"));
    std::string numbers = "FN:Goodwin many\r\n";
    for (int i = 0; i < 10'000; ++i) numbers += "TEL;TYPE=CELL:" + std::to_string(i) + "\r\n";
    write("home/many.vcf", card(numbers));
    fs::create_symlink("home", root / "home/loop.vcf");
    for (int run = 0; run < 2; ++run) { // without an index, and with one
        const std::string found = search("goodwin");
        EXPECT_EQ(countOf(found, "\"name\" : \"Goodwin"), 5U);
        EXPECT_EQ(countOf(found, "\"value\" : "), 10'000U);
        EXPECT_THAT(found, HasSubstr("\"id\" : \"one\""));
    }
}

TEST_F(ContactStoreProgram, AnUnknownTargetIsAClearErrorAndChangesNothing) {
    write("home/a.vcf", card("UID:a\r\nFN:Anna\r\n"));
    const ProgramResult result =
        program.run({"contacts-save", "--request", request(R"({"name":"Anna","targetId":"b"})")});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.output, "");
    EXPECT_THAT(result.errorOutput, HasSubstr("Code=404 \"There is no contact with the identifier b.\""));
    EXPECT_EQ(content(root / "home/a.vcf"), card("UID:a\r\nFN:Anna\r\n"));
}

TEST_F(ContactStoreProgram, ABookWithoutWritePermissionKeepsItsCards) {
    write("home/a.vcf", card("UID:a\r\nFN:Anna\r\n"));
    program.launcher = test::withoutPrivileges();
    fs::permissions(root / "home", fs::perms(0500));
    const ProgramResult result =
        program.run({"contacts-save", "--request", request(R"({"name":"A","targetId":"a","jobTitle":"Cook"})")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.errorOutput, HasSubstr("NSPOSIXErrorDomain Code=13 "));
    EXPECT_EQ(content(root / "home/a.vcf"), card("UID:a\r\nFN:Anna\r\n"));
    save(R"({"name":"New Person"})"); // goes to a book of its own
    EXPECT_TRUE(fs::exists(root / "default"));
    fs::permissions(root / "home", fs::perms(0700));
}

TEST_F(ContactStoreProgram, SavesAtOnceAllSurvive) {
    write("home/a.vcf", card("UID:a\r\nFN:Anna\r\n"));
    constexpr std::size_t writers = 6;
    test::onThreads(writers, [&](std::size_t i) {
        const fs::path path = program.folder() / ("request" + std::to_string(i) + ".json");
        std::ofstream(path) << R"({"name":"A","targetId":"a","phones":[{"label":"home","value":"writer )" << i
                            << "\"}]}";
        const ProgramResult result = program.run({"contacts-save", "--request", path.string()});
        EXPECT_EQ(result.status, 0) << result;
    });
    EXPECT_EQ(countOf(search("anna"), "\"value\" : \"writer"), writers);
}

TEST_F(ContactStoreProgram, AFullDiskLeavesTheOldCard) {
    write("home/a.vcf", card("UID:a\r\nFN:Anna\r\n"));
    program.launcher = {"/usr/bin/prlimit", "--fsize=2000"};
    const std::string note(10'000, 'x');
    const ProgramResult result =
        program.run({"contacts-save", "--request",
                     request(R"({"name":"A","targetId":"a","phones":[{"label":"home","value":")" + note + "\"}]}")});
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("NSPOSIXErrorDomain "));
    EXPECT_EQ(content(root / "home/a.vcf"), card("UID:a\r\nFN:Anna\r\n"));
    EXPECT_EQ(std::distance(fs::directory_iterator(root / "home"), {}), 1);
}

} // namespace
} // namespace vesk
