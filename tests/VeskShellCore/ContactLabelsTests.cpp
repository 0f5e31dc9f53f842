#include "VeskShellCore/ContactLabels.hpp"

#include "VeskPlatform/ContactStore.hpp"

#include <gtest/gtest.h>

namespace vesk::VeskContactsOperations {
namespace {

TEST(NativeLabels, KnowTheNamesThatPeopleWrite) {
    const TextFolding folding("en_US");
    const std::pair<const char*, const char*> cases[] = {
        {"iPhone", contactLabel::iPhone},
        {"IPHONE", contactLabel::iPhone},
        {"mobile", contactLabel::mobile},
        {"Cell", contactLabel::mobile},
        {"cellphone", contactLabel::mobile},
        {"main", contactLabel::main},
        {" Home ", contactLabel::home},
        {"h\u00f6me", contactLabel::home},
        {"work", contactLabel::work},
        {"Office", contactLabel::work},
        {"other", contactLabel::other},
        {"Ferienhaus", "Ferienhaus"},
        {" Boat \n", "Boat"},
        {"cell phone", "cell phone"},
        {"", "default"},
        {" \t", "default"},
    };
    for (const auto& [label, stored] : cases) EXPECT_EQ(nativeLabel(label, "default", folding), stored) << label;
}

TEST(ReadableLabels, AreTheReverse) {
    const std::pair<std::optional<std::string>, const char*> cases[] = {
        {contactLabel::iPhone, "iPhone"},
        {contactLabel::mobile, "mobile"},
        {contactLabel::main, "main"},
        {contactLabel::home, "home"},
        {contactLabel::work, "work"},
        {contactLabel::other, "other"},
        {std::nullopt, "other"},
        {"", "other"},
        {" \n", "other"},
        {" Ferienhaus ", "Ferienhaus"},
        {"home", "home"},
        {"_$!<Home>!$_ ", "home"},
        {"_$!<home>!$_", "_$!<home>!$_"},
    };
    for (const auto& [stored, label] : cases) EXPECT_EQ(readableLabel(stored), label);
}

} // namespace
} // namespace vesk::VeskContactsOperations
