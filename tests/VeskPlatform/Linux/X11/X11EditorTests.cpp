#include "tests/VeskPlatform/Linux/X11/X11World.hpp"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace vesk::test {
namespace {

struct Editor {
    const char* name;
    const char* program;
    std::vector<std::string> options;
};
std::ostream& operator<<(std::ostream& stream, const Editor& editor) { return stream << editor.name; }

/// Types into an editor of a toolkit and has it save.
class X11EditorTests : public X11World, public ::testing::WithParamInterface<Editor> {
protected:
    static void SetUpTestSuite() {
        X11World::SetUpTestSuite();
        desktop->setVariable("LC_ALL", "C.UTF-8");
        desktop->setVariable("DBUS_SESSION_BUS_ADDRESS", "unix:path=" + desktop->home() + "/no-bus");
        desktop->setVariable("XDG_CONFIG_HOME", desktop->home() + "/config");
    }
    void type(const std::u16string& text) {
        InputEvents& events = session->inputEvents();
        for (const char16_t unit : text)
            for (const bool isDown : {true, false})
                events.post(*events.create(KeyboardEvent{.keyDown = isDown, .unit = unit}));
    }
    std::string saved() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string path = desktop->home() + "/text.txt";
};

TEST_P(X11EditorTests, TypedTextIsSaved) {
    desktop->run("setxkbmap", {"-layout", "de"});
    std::ofstream(path) << "old";
    auto arguments = GetParam().options;
    arguments.push_back(path);
    const pid_t editor = desktop->launch(GetParam().program, arguments);
    awaitFront(editor);
    const auto front = session->runningApplications().frontmost();
    EXPECT_EQ(front->bundleIdentifier.has_value(), front->bundlePath.has_value());
    EXPECT_TRUE(front->hasUserInterface);
    // Letters that come before the text field has the focus go nowhere: type until one shows.
    eventually("the editor to take a letter", [&] {
        type(u"x");
        desktop->run("xdotool", {"key", "ctrl+s"});
        return saved().starts_with('x');
    });
    desktop->run("xdotool", {"key", "ctrl+a"});
    type(u"Gr\u00fc\u00dfe! {a}[b] @\\|~ \u00e9\u00c8 \u0416\u03b1 \u20ac \U0001F600\U0001F680 end");
    const std::string expected = "Gr\xC3\xBC\xC3\x9F"
                                 "e! {a}[b] @\\|~ \xC3\xA9\xC3\x88 \xD0\x96\xCE\xB1 \xE2\x82\xAC "
                                 "\xF0\x9F\x98\x80\xF0\x9F\x9A\x80 end";
    desktop->run("xdotool", {"key", "ctrl+s"});
    eventually("the saved text", [&] { return saved().find(" end") != std::string::npos; });
    EXPECT_EQ(saved().substr(0, saved().find('\n')), expected);
    desktop->kill(editor);
}

INSTANTIATE_TEST_SUITE_P(Editors, X11EditorTests,
                         ::testing::Values(Editor{"Gtk", "mousepad", {"--disable-server"}},
                                           Editor{"Qt", "featherpad", {"--standalone"}}),
                         [](const auto& each) { return each.param.name; });

} // namespace
} // namespace vesk::test
