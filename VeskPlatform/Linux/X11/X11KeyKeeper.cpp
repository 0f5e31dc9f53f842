#include "VeskPlatform/Linux/X11/X11KeyKeeper.hpp"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <linux/close_range.h>
#include <memory>
#include <sys/socket.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>
#include <xcb/xtest.h>

namespace vesk {

namespace {

/// The keeper's own part. Streams of the caller stay with the caller, so that nobody waits for their end.
void leaveTheCaller(int line) {
    ::setsid();
    const int null = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        if (stream != line) ::dup2(null, stream);
    ::close_range(STDERR_FILENO + 1, static_cast<unsigned int>(line) - 1, 0);
    ::close_range(static_cast<unsigned int>(line) + 1, ~0U, 0);
    // The end of the caller is what it waits for; until then it is not to be ended along with it.
    for (const int signal : {SIGHUP, SIGINT, SIGTERM}) std::signal(signal, SIG_IGN);
}

} // namespace

void setMeaning(xcb_connection_t* connection, xcb_keycode_t key, xcb_keysym_t symbol, xcb_keysym_t shifted) {
    const std::array<xcb_keysym_t, 2> symbols{symbol, shifted};
    xcb_change_keyboard_mapping(connection, 1, key, symbols.size(), symbols.data());
}

void takeMeaningBack(xcb_connection_t* connection, const KeyLoan& loan) {
    const std::unique_ptr<xcb_get_keyboard_mapping_reply_t, decltype(&std::free)> now(
        xcb_get_keyboard_mapping_reply(connection, xcb_get_keyboard_mapping(connection, loan.key, 1), nullptr),
        &std::free);
    if (!now || now->keysyms_per_keycode < 1) return;
    if (*xcb_get_keyboard_mapping_keysyms(now.get()) == loan.symbol)
        setMeaning(connection, loan.key, XCB_NO_SYMBOL, XCB_NO_SYMBOL);
}

void X11KeyKeeper::add(const Message& message, Duties& duties) {
    if (message.letGo.type != 0) {
        duties.letGo.push_back(message.letGo);
    } else if (message.loan.key != 0) {
        std::erase_if(duties.loans, [&](const KeyLoan& known) { return known.key == message.loan.key; });
        duties.loans.push_back(message.loan);
    } else {
        duties = {};
    }
}

X11KeyKeeper::Duties X11KeyKeeper::dutiesAtTheEnd(int line) {
    Duties duties;
    Message message;
    while (true) {
        const ssize_t count = ::read(line, &message, sizeof message);
        if (count == static_cast<ssize_t>(sizeof message))
            add(message, duties);
        else if (count >= 0 || errno != EINTR)
            return duties;
    }
}

void X11KeyKeeper::keep(const std::string& display, int line) {
    leaveTheCaller(line);
    const Duties duties = dutiesAtTheEnd(line);
    if (!duties.letGo.empty() || !duties.loans.empty()) {
        xcb_connection_t* const connection = xcb_connect(display.c_str(), nullptr);
        for (const FakeInput& input : duties.letGo)
            xcb_test_fake_input(connection, input.type, input.detail, XCB_CURRENT_TIME, XCB_WINDOW_NONE, 0, 0, 0);
        xcb_flush(connection);
        if (!duties.loans.empty()) std::this_thread::sleep_for(meaningLasts);
        for (const KeyLoan& loan : duties.loans) takeMeaningBack(connection, loan);
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
    ::_exit(0);
}

/// Twice forked, so that it is nobody's child to wait for.
X11KeyKeeper::X11KeyKeeper(const std::string& display) {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return;
    const FileDescriptor reading(ends[0]);
    line_.reset(ends[1]);
    const pid_t child = ::fork();
    if (child == 0) {
        if (::fork() == 0) {
            line_.reset();
            keep(display, reading.get());
        }
        ::_exit(0);
    }
    while (child > 0 && ::waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
}

void X11KeyKeeper::send(const Message& message) const {
    // Where there is no keeper, this process gives back by itself.
    if (line_) (void)::send(line_.get(), &message, sizeof message, MSG_NOSIGNAL);
}

void X11KeyKeeper::note(const KeyLoan& loan) { send({.loan = loan}); }
void X11KeyKeeper::note(const std::vector<FakeInput>& letGo) {
    for (const FakeInput& input : letGo) send({.letGo = input});
}
void X11KeyKeeper::release() { send({}); }

} // namespace vesk
