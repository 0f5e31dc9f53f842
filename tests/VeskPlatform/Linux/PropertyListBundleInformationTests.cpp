#include "VeskPlatform/Linux/PropertyListBundleInformation.hpp"

#include "VeskPlatform/Linux/ElfSection.hpp"
#include "VeskPlatform/Linux/MainBundle.hpp"
#include "VeskPlatform/Linux/PosixFileReader.hpp"
#include "VeskPlatform/Portable/ExecutableBundle.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <filesystem>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

const std::string granting = R"(<plist version="1.0"><dict><key>a</key><true/></dict></plist>)";
const JsonValue::Object granted{{"a", {true}}};

class BundleInformationTests : public ::testing::Test {
protected:
    TemporaryFolder folder;
    PosixFileReader files;
    PropertyListBundleInformation information{files};

    Bundle bundleOf(const std::string& name) const {
        return bundleOfExecutable(folder / name + "/Contents/MacOS/program");
    }
};

TEST_F(BundleInformationTests, ABundleHasAnInformationDictionary) {
    folder.write("V.app/Contents/Info.plist", granting);
    EXPECT_EQ(information.informationDictionary(bundleOf("V.app")), granted);
    EXPECT_EQ(information.informationDictionary(bundleOf("Other.app")), JsonValue::Object{});
}

TEST_F(BundleInformationTests, ABareExecutableHasNone) {
    folder.write("bin/Contents/Info.plist", granting);
    folder.write("bin/Contents/entitlements.plist", granting);
    EXPECT_EQ(information.informationDictionary(bundleOfExecutable(folder / "bin/program")), JsonValue::Object{});
    EXPECT_EQ(information.entitlements(folder / "bin"), JsonValue::Object{});
}

TEST_F(BundleInformationTests, WhatIsNoDictionaryIsEmpty) {
    for (const char* bytes : {"", "nonsense", "<plist version=\"1.0\"><array/></plist>"}) {
        folder.write("V.app/Contents/Info.plist", bytes);
        folder.write("V.app/Contents/entitlements.plist", bytes);
        EXPECT_EQ(information.informationDictionary(bundleOf("V.app")), JsonValue::Object{}) << bytes;
        EXPECT_EQ(information.entitlements(folder / "V.app"), JsonValue::Object{}) << bytes;
    }
    std::filesystem::create_directories(folder / "W.app/Contents/Info.plist");
    EXPECT_EQ(information.informationDictionary(bundleOf("W.app")), JsonValue::Object{});
}

TEST_F(BundleInformationTests, TheRightsOfABundleStandInItsFile) {
    folder.write("V.app/Contents/entitlements.plist", granting);
    EXPECT_EQ(information.entitlements(folder / "V.app"), granted);
}

TEST_F(BundleInformationTests, TheRightsOfAProgramStandInItsSection) {
    const JsonValue::Array list{{std::string("one")}};
    EXPECT_EQ(information.entitlements(runningExecutable()),
              (JsonValue::Object{{"example.list", {list}}, {"example.right", {true}}}));
    EXPECT_EQ(information.entitlements("/bin/true"), JsonValue::Object{});
    EXPECT_EQ(information.entitlements(folder / "none"), JsonValue::Object{});
}

TEST(ElfSectionTests, GivesTheBytesOfASection) {
    const auto section = elfSection(runningExecutable(), ".vesk.entitlements");
    ASSERT_TRUE(section);
    EXPECT_TRUE(section->starts_with("<?xml")) << *section;
    EXPECT_TRUE(section->ends_with("</plist>\n")) << *section;
    EXPECT_EQ(elfSection(runningExecutable(), ".vesk"), std::nullopt);
    EXPECT_EQ(elfSection(runningExecutable(), ".vesk.entitlements.more"), std::nullopt);
    EXPECT_EQ(elfSection(runningExecutable(), ".bss"), "") << "a section without bytes";
}

TEST(ElfSectionTests, WhatIsNoElfFileHasNone) {
    TemporaryFolder folder;
    EXPECT_EQ(elfSection(folder.write("text", "#!/bin/sh\n"), ".text"), std::nullopt);
    EXPECT_EQ(elfSection(folder.write("empty", ""), ".text"), std::nullopt);
    EXPECT_EQ(elfSection(folder.path(), ".text"), std::nullopt);
    EXPECT_EQ(elfSection("/dev/null", ".text"), std::nullopt);
}

TEST(ElfSectionTests, AFileThatEndsTooEarlyHasNone) {
    TemporaryFolder folder;
    std::ifstream whole("/bin/true", std::ios::binary);
    const std::string bytes{std::istreambuf_iterator<char>(whole), {}};
    ASSERT_TRUE(elfSection("/bin/true", ".text"));
    for (const std::size_t size :
         {std::size_t{4}, std::size_t{40}, std::size_t{64}, bytes.size() / 2, bytes.size() - 1})
        EXPECT_EQ(elfSection(folder.write("cut", bytes.substr(0, size)), ".vesk.entitlements"), std::nullopt) << size;
}

} // namespace
} // namespace vesk::test
