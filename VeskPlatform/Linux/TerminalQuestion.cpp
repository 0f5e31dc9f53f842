#include "VeskPlatform/Linux/TerminalQuestion.hpp"

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <asio/buffer.hpp>
#include <asio/io_context.hpp>
#include <asio/posix/stream_descriptor.hpp>
#include <asio/read_until.hpp>
#include <asio/signal_set.hpp>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace vesk {

namespace {

FileDescriptor openTerminal() {
    FileDescriptor terminal(::open("/dev/tty", O_RDWR | O_CLOEXEC | O_NOCTTY));
    if (terminal && ::tcgetpgrp(terminal.get()) != ::getpgrp()) return {};
    return terminal;
}

PromptAnswer meaning(std::string_view line) {
    const std::string answer = lowercased(trimmed(line));
    return answer == "y" || answer == "yes" ? PromptAnswer::grant : PromptAnswer::deny;
}

/// The line that was typed with its end; none after end of input, a hang-up or an interrupt.
std::optional<std::string> readLine(asio::io_context& context, asio::posix::stream_descriptor& terminal,
                                    asio::signal_set& interrupt) {
    constexpr std::size_t longestLine = 4096; // the terminal's own limit
    interrupt.async_wait([&](const std::error_code&, int) { terminal.cancel(); });
    std::string typed;
    std::optional<std::string> line;
    asio::async_read_until(terminal, asio::dynamic_buffer(typed, longestLine), '\n',
                           [&](const std::error_code& error, std::size_t length) {
                               if (!error || error == asio::error::not_found)
                                   line = typed.substr(0, error ? typed.size() : length);
                               interrupt.cancel();
                           });
    context.run();
    return line;
}

} // namespace

std::optional<PromptAnswer> askOnTerminal(const std::string& question) {
    FileDescriptor file = openTerminal();
    if (!file) return std::nullopt;
    try {
        asio::io_context context(1);
        asio::signal_set interrupt(context, SIGINT); // from before the question can be seen
        writeAll(file, question + " [y/N] ", "/dev/tty");
        asio::posix::stream_descriptor terminal(context, file.release());
        const auto line = readLine(context, terminal, interrupt);
        if (line) return meaning(*line);
        (void)::write(terminal.native_handle(), "\n", 1); // so that what follows begins on a line of its own
        return PromptAnswer::undecided;
    } catch (const PosixError&) {
        return std::nullopt; // the terminal is gone
    }
}

} // namespace vesk
