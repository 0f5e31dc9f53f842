#include "VeskPlatform/Linux/X11/X11BorrowedKeys.hpp"
#include "VeskPlatform/Linux/X11/X11Keymap.hpp"
#include "VeskPlatform/Linux/X11/XcbKeyboard.hpp"
#include "tests/VeskPlatform/Linux/X11/X11World.hpp"

#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <xkbcommon/xkbcommon-x11.h>

namespace vesk::test {
namespace {

/// Types into a terminal that writes what it reads to a file.
class X11TypingTests : public X11World {
protected:
    static void SetUpTestSuite() {
        X11World::SetUpTestSuite();
        desktop->setVariable("LC_ALL", "C.UTF-8");
    }

    void SetUp() override {
        layout({"us"});
        const std::string script = "stty -echo -icanon -isig -iexten min 1; exec cat > " + path;
        terminal = desktop->launch("xterm", {"-u8", "-e", "sh", "-c", script});
        awaitFront(terminal);
        eventually("the shell in the terminal", [&] { return std::filesystem::exists(path); });
    }
    void TearDown() override {
        session.reset();
        desktop->kill(terminal);
        std::filesystem::remove(path);
    }

    static void layout(std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), "-layout");
        desktop->run("setxkbmap", arguments);
    }

    static void post(InputEvents& events, const KeyboardEvent& event) {
        const auto prepared = events.create(event);
        ASSERT_NE(prepared, nullptr) << "key " << event.keyCode;
        events.post(*prepared);
    }
    /// At the pace at which the assistant types: a program looks up what a key means when it comes to the event.
    static void type(InputEvents& events, const std::u16string& text) {
        for (const char16_t unit : text) {
            post(events, {.keyDown = true, .unit = unit});
            post(events, {.keyDown = false, .unit = unit});
            std::this_thread::sleep_for(std::chrono::milliseconds(6));
        }
    }
    void type(const std::u16string& text) { type(session->inputEvents(), text); }

    std::string typedText() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    /// All that was typed, up to the end of its line.
    std::string typedLine() {
        try {
            eventually("a line in the terminal", [&] { return typedText().ends_with('\n'); });
        } catch (const std::runtime_error& error) {
            ADD_FAILURE() << error.what();
        }
        return typedText();
    }

    std::string path = desktop->home() + "/typed";
    pid_t terminal = 0;
};

TEST_F(X11TypingTests, LettersSignsAndCapitalsArrive) {
    type(u"Hello, World! ~ {\"a\": [1, 2]} \\ |@#$%^&*()_+-=`'<>?/\n");
    EXPECT_EQ(typedLine(), "Hello, World! ~ {\"a\": [1, 2]} \\ |@#$%^&*()_+-=`'<>?/\n");
}

struct LayoutCase {
    const char* name;
    std::vector<std::string> arguments;
};
std::ostream& operator<<(std::ostream& stream, const LayoutCase& layout) { return stream << layout.name; }

class X11LayoutTests : public X11TypingTests, public ::testing::WithParamInterface<LayoutCase> {};

TEST_P(X11LayoutTests, EachLayoutTypesTheSameText) {
    layout(GetParam().arguments);
    type(u"xyz XYZ aqwm 0123456789 !\"$%&/()=?^~`'@{}[]\\|<>;:,._-#+* \u00e4\u00d6\u00df \u00e9\u00c8\u00e7 \u20ac\n");
    EXPECT_EQ(typedLine(), "xyz XYZ aqwm 0123456789 !\"$%&/()=?^~`'@{}[]\\|<>;:,._-#+* \xC3\xA4\xC3\x96\xC3\x9F "
                           "\xC3\xA9\xC3\x88\xC3\xA7 \xE2\x82\xAC\n");
}

INSTANTIATE_TEST_SUITE_P(Layouts, X11LayoutTests,
                         ::testing::Values(LayoutCase{"American", {"us"}}, LayoutCase{"German", {"de"}},
                                           LayoutCase{"French", {"fr"}},
                                           LayoutCase{"Dvorak", {"us", "-variant", "dvorak"}},
                                           LayoutCase{"Russian", {"ru"}}, LayoutCase{"SecondOfTwo", {"us,de"}}),
                         [](const auto& each) { return each.param.name; });

TEST_F(X11TypingTests, CharactersOfNoLayoutArrive) {
    type(u"\u03b1\u0416\u05d0\u0e01\u4e2d\u6587\u0130\u1e9e\u00ff\u2026\u201c\u201d\n");
    EXPECT_EQ(typedLine(), "\xCE\xB1\xD0\x96\xD7\x90\xE0\xB8\x81\xE4\xB8\xAD\xE6\x96\x87\xC4\xB0\xE1\xBA\x9E\xC3\xBF"
                           "\xE2\x80\xA6\xE2\x80\x9C\xE2\x80\x9D\n");
}

TEST_F(X11TypingTests, ACharacterOfTwoUnitsArrivesAsOne) {
    type(u"a\U0001F600b\U0001F680\U0001F600\n");
    EXPECT_EQ(typedLine(), "a\xF0\x9F\x98\x80"
                           "b\xF0\x9F\x9A\x80\xF0\x9F\x98\x80\n");
}

TEST_F(X11TypingTests, HalfACharacterTypesNothing) {
    type(std::u16string{u'a', char16_t(0xDE00), u'b', char16_t(0xD83D), u'c', u'\n'});
    EXPECT_EQ(typedLine(), "abc\n");
}

/// More than there are spare keys, each of which has to get another meaning.
TEST_F(X11TypingTests, ManyDifferentCharactersOfNoLayoutArrive) {
    std::u16string text;
    for (char16_t unit = 0x4E00; unit < 0x4E80; ++unit) text.push_back(unit);
    type(text + u"\n");
    std::string expected;
    for (unsigned int unit = 0x4E00; unit < 0x4E80; ++unit)
        expected += {char(0xE0 | unit >> 12U), char(0x80 | (unit >> 6U & 0x3F)), char(0x80 | (unit & 0x3F))};
    EXPECT_EQ(typedLine(), expected + "\n");
}

TEST_F(X11TypingTests, TwoThatTypeAtTheSameTimeBorrowDifferentKeys) {
    X11Connection first(desktop->display()), second(desktop->display());
    xkb_x11_setup_xkb_extension(first.get(), 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr,
                                nullptr);
    const X11Keymap keymap(first, xkb_x11_get_core_keyboard_device_id(first.get()));
    X11BorrowedKeys one(first, desktop->display()), other(second, desktop->display());
    for (X11BorrowedKeys* keys : {&one, &other}) keys->adoptKeymap(keymap);
    const auto letter = one.keyFor(XKB_KEY_Cyrillic_zhe, XKB_KEY_Cyrillic_ZHE);
    const auto otherLetter = other.keyFor(XKB_KEY_ssharp, XKB_KEY_ssharp);
    ASSERT_TRUE(letter && otherLetter);
    EXPECT_NE(*letter, *otherLetter);
    for (X11BorrowedKeys* keys : {&one, &other}) EXPECT_EQ(keys->keys().size(), 1U);
}

TEST_F(X11TypingTests, CapsLockChangesNothing) {
    layout({"de"});
    desktop->run("xdotool", {"key", "Caps_Lock"});
    type(u"abC \u00e4\u00d6\u00df 1! \u03b1\u0391 \u0436\u0416\n");
    desktop->run("xdotool", {"key", "Caps_Lock"});
    EXPECT_EQ(typedLine(), "abC \xC3\xA4\xC3\x96\xC3\x9F 1! \xCE\xB1\xCE\x91 \xD0\xB6\xD0\x96\n");
}

/// As the key does that goes from one layout of the user's to the next.
void switchLayout(std::uint8_t number) {
    X11Connection connection(std::getenv("DISPLAY"));
    ASSERT_NE(xkb_x11_setup_xkb_extension(connection.get(), 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr,
                                          nullptr, nullptr, nullptr),
              0);
    xcb_xkb_latch_lock_state(connection.get(), XCB_XKB_ID_USE_CORE_KBD, 0, 0, 1, number, 0, 0, 0);
    connection.synchronize();
}

TEST_F(X11TypingTests, TheLayoutThatIsSwitchedOnCounts) {
    layout({"us,de,ru"});
    for (std::uint8_t number = 0; number < 3; ++number) {
        switchLayout(number);
        type(u"yz\u00fc\u0436");
    }
    switchLayout(0);
    type(u"\n");
    EXPECT_EQ(typedLine(), "yz\xC3\xBC\xD0\xB6yz\xC3\xBC\xD0\xB6yz\xC3\xBC\xD0\xB6\n");
}

TEST_F(X11TypingTests, ALayoutThatChangesMeanwhileCounts) {
    std::string expected;
    for (const std::string name : {"us", "de", "fr"}) {
        layout({name});
        type(u"yzaq\u0436");
        expected += "yzaq\xD0\xB6";
        // The terminal looks up a key's meaning when it comes to its event.
        eventually("the text in the terminal", [&] { return typedText().size() >= expected.size(); });
    }
    EXPECT_EQ(typedText(), expected);
}

bool isDown(const std::string& name) {
    X11Connection connection(std::getenv("DISPLAY"));
    xkb_x11_setup_xkb_extension(connection.get(), 1, 0, XKB_X11_SETUP_XKB_EXTENSION_NO_FLAGS, nullptr, nullptr, nullptr,
                                nullptr);
    const X11Keymap keymap(connection, xkb_x11_get_core_keyboard_device_id(connection.get()));
    const auto key = keymap.keyFor(xkb_keysym_from_name(name.c_str(), XKB_KEYSYM_NO_FLAGS)).value();
    const auto keys = connection.answer<xcb_query_keymap_reply_t>(xcb_query_keymap(connection.get()));
    return (keys->keys[key / 8] >> (key % 8) & 1) != 0;
}

TEST_F(X11TypingTests, KeysThatTheUserHoldsAlterNothingAndStayHeld) {
    std::string expected;
    for (const std::string key : {"Shift_L", "Control_L", "Alt_L", "Super_L"}) {
        desktop->run("xdotool", {"keydown", key});
        type(u"aB1\u0436");
        expected += "aB1\xD0\xB6";
        eventually("the text in the terminal", [&] { return typedText().size() >= expected.size(); });
        EXPECT_TRUE(isDown(key)) << key;
        desktop->run("xdotool", {"keyup", key});
        EXPECT_FALSE(isDown(key)) << key;
    }
    EXPECT_EQ(typedText(), expected);
}

TEST_F(X11TypingTests, TabAndDeleteAreKeys) {
    type(u"a\tbx\bc\n");
    EXPECT_EQ(typedLine(), "a\tbx\x7F"
                           "c\n");
}

TEST_F(X11TypingTests, ACharacterWithoutASymbolCannotBeTyped) {
    for (const char16_t unit : {u'\x01', u'\x1F', char16_t(0xFFFF)})
        EXPECT_EQ(session->inputEvents().create(KeyboardEvent{.keyDown = true, .unit = unit}), nullptr);
}

TEST_F(X11TypingTests, AnUnknownKeyCannotBePressed) {
    EXPECT_EQ(session->inputEvents().create(KeyboardEvent{.keyCode = 7, .keyDown = true}), nullptr);
}

/// What the server's keys mean, as one text.
std::string keyTable(VirtualDesktop& desktop) { return desktop.run("sh", {"-c", "xmodmap -pke | md5sum"}); }

TEST_F(X11TypingTests, BorrowedKeysAreGivenBack) {
    const std::string before = keyTable(*desktop);
    type(u"\u0436\u4e2d\n");
    EXPECT_NE(keyTable(*desktop), before);
    session.reset();
    EXPECT_EQ(keyTable(*desktop), before);
}

TEST_F(X11TypingTests, AKeyThatGotAnotherMeaningMeanwhileIsLeftAlone) {
    type(u"\u0436");
    const std::string key =
        desktop->run("sh", {"-c", "xmodmap -pke | sed -n 's/keycode *\\([0-9]*\\) = Cyrillic_zhe.*/\\1/p'"});
    ASSERT_NE(key, "");
    desktop->run("xmodmap", {"-e", "keycode " + key + " = aacute"});
    session.reset();
    EXPECT_EQ(desktop->run("sh", {"-c", "xmodmap -pke | grep -c aacute"}), "1");
}

class X11InterruptedTypingTests : public X11TypingTests, public ::testing::WithParamInterface<int> {};

TEST_P(X11InterruptedTypingTests, BorrowedKeysAreGivenBackForAProcessThatIsKilled) {
    const std::string before = keyTable(*desktop);
    const pid_t child = ::fork();
    if (child == 0) {
        type(connect(environment)->inputEvents(), u"\u0436\u4e2d");
        ::pause();
    }
    eventually("a borrowed key", [&] { return keyTable(*desktop) != before; });
    ::kill(child, GetParam());
    ::waitpid(child, nullptr, 0);
    eventually("the keys as before", [&] { return keyTable(*desktop) == before; });
}

INSTANTIATE_TEST_SUITE_P(Signals, X11InterruptedTypingTests, ::testing::Values(SIGTERM, SIGINT, SIGKILL));

} // namespace
} // namespace vesk::test
