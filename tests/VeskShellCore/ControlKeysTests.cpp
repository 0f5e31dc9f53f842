#include "VeskShellCore/ControlKeys.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(ControlKeys, EachKeyHasItsNameAndItsCode) {
    struct Case {
        std::string_view name;
        SupportedControlKey key;
        int code;
    };
    const Case cases[] = {
        {"return", SupportedControlKey::return_, 36}, {"tab", SupportedControlKey::tab, 48},
        {"escape", SupportedControlKey::escape, 53},  {"space", SupportedControlKey::space, 49},
        {"delete", SupportedControlKey::delete_, 51}, {"left", SupportedControlKey::left, 123},
        {"right", SupportedControlKey::right, 124},   {"up", SupportedControlKey::up, 126},
        {"down", SupportedControlKey::down, 125},
    };
    ASSERT_EQ(std::size(cases), rawValueTable<SupportedControlKey>.size());
    for (const Case& expected : cases) {
        SCOPED_TRACE(expected.name);
        EXPECT_EQ(parseSupportedControlKey(expected.name), expected.key);
        EXPECT_EQ(virtualKeyCode(expected.key), expected.code);
    }
}

TEST(ControlKeys, EnterIsAnotherNameForReturnAndCaseCounts) {
    EXPECT_EQ(parseSupportedControlKey("enter"), SupportedControlKey::return_);
    for (const char* name : {"Return", "Enter", "", " return", "home"})
        EXPECT_EQ(parseSupportedControlKey(name), std::nullopt) << name;
}

TEST(ControlKeys, TheListIsInTheirOrder) {
    EXPECT_EQ(supportedControlKeyList(),
              "return, tab, escape, space, delete, left, right, up, down, or `enter` as an alias for `return`");
}

TEST(ControlKeys, FlagsOfModifiersAreJoined) {
    using enum CapabilityKeyModifier;
    const std::pair<std::vector<CapabilityKeyModifier>, std::uint32_t> cases[] = {
        {{}, 0},
        {{command}, 0x100000},
        {{shift}, 0x20000},
        {{option}, 0x80000},
        {{control}, 0x40000},
        {{shift, shift}, 0x20000},
        {{control, command, option, shift}, 0x1E0000},
    };
    for (const auto& [modifiers, flags] : cases) EXPECT_EQ(eventFlags(modifiers), flags) << flags;
}

} // namespace
} // namespace vesk
