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

void remember(std::vector<KeyLoan>& loans, const KeyLoan& loan) {
    if (loan.key == 0) {
        loans.clear();
        return;
    }
    std::erase_if(loans, [&loan](const KeyLoan& known) { return known.key == loan.key; });
    loans.push_back(loan);
}

std::vector<KeyLoan> loansAtTheEnd(int line) {
    std::vector<KeyLoan> loans;
    KeyLoan loan;
    while (true) {
        const ssize_t count = ::read(line, &loan, sizeof loan);
        if (count == static_cast<ssize_t>(sizeof loan))
            remember(loans, loan);
        else if (count >= 0 || errno != EINTR)
            return loans;
    }
}

[[noreturn]] void keep(const std::string& display, int line) {
    leaveTheCaller(line);
    const std::vector<KeyLoan> loans = loansAtTheEnd(line);
    if (!loans.empty()) {
        std::this_thread::sleep_for(meaningLasts);
        xcb_connection_t* const connection = xcb_connect(display.c_str(), nullptr);
        for (const KeyLoan& loan : loans) takeMeaningBack(connection, loan);
        std::free(xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
    }
    ::_exit(0);
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

void X11KeyKeeper::send(const KeyLoan& loan) const {
    // Where there is no keeper, this process gives back by itself.
    if (line_) (void)::send(line_.get(), &loan, sizeof loan, MSG_NOSIGNAL);
}

void X11KeyKeeper::note(const KeyLoan& loan) { send(loan); }
void X11KeyKeeper::release() { send({}); }

} // namespace vesk
