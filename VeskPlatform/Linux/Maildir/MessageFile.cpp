#include "VeskPlatform/Linux/Maildir/MessageFile.hpp"

#include "VeskPlatform/Linux/Maildir/HeaderBlock.hpp"
#include "VeskPlatform/Linux/Maildir/HtmlText.hpp"
#include "VeskPlatform/Linux/Maildir/MessageReader.hpp"
#include "VeskPlatform/Linux/OpenFailure.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace vesk::maildir {
namespace {

/// What most messages are smaller than, and all that is looked at of others.
constexpr std::uint64_t kilobyte = 1024, firstWindow = 256 * kilobyte, lastWindow = 8192 * kilobyte;
constexpr std::uint64_t firstHeaderWindow = 8 * kilobyte, mostHeaderBytes = 1024 * kilobyte;

Instant instantOf(const timespec& time) {
    return Instant(std::chrono::seconds(time.tv_sec) + std::chrono::milliseconds(time.tv_nsec / 1'000'000));
}

std::string withLineFeeds(std::string text) {
    std::size_t kept = 0;
    for (std::size_t i = 0; i < text.size(); ++i)
        if (text[i] != '\r' || i + 1 == text.size() || text[i + 1] != '\n') text[kept++] = text[i];
    text.resize(kept);
    return text;
}

std::string shownText(MessageText text, std::size_t characters) {
    // A character that people count may take many bytes, but few texts have many of those.
    constexpr std::size_t generousBytes = 64;
    const std::size_t enough = characters * generousBytes;
    if (text.isHtml) return htmlText(text.text, enough);
    if (text.text.size() > 2 * enough) text.text.resize(2 * enough);
    return withLineFeeds(std::move(text.text));
}

} // namespace

MessageFile::MessageFile(const std::string& path)
    : path_(path), file_(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY)) {
    struct stat status {};
    if (!file_ || ::fstat(file_.get(), &status) != 0) throwOpenFailure(errno, path);
    if (!S_ISREG(status.st_mode)) throw PosixError(EINVAL, path);
    modified_ = instantOf(status.st_mtim);
    size_ = static_cast<std::uint64_t>(status.st_size);
}

std::string MessageFile::firstBytes(std::uint64_t count) const {
    std::string bytes(static_cast<std::size_t>(std::min(count, size_)), '\0');
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got =
            ::pread(file_.get(), bytes.data() + filled, bytes.size() - filled, static_cast<off_t>(filled));
        if (got < 0 && errno == EINTR) continue;
        if (got < 0) throw PosixError(errno, path_);
        if (got == 0) break;
        filled += static_cast<std::size_t>(got);
    }
    bytes.resize(filled);
    return bytes;
}

std::string MessageFile::headerBytes() const {
    for (std::uint64_t window = firstHeaderWindow;; window *= 8) {
        std::string bytes = firstBytes(std::min(window, mostHeaderBytes));
        if (window >= size_ || window >= mostHeaderBytes || endOfHeaders(bytes) != std::string::npos) return bytes;
    }
}

std::string MessageFile::preview(const MessageReader& reader, std::size_t characters) const {
    for (std::uint64_t window = firstWindow;; window *= 8) {
        MessageText text = reader.text(firstBytes(std::min(window, lastWindow)));
        const bool mayHaveMore = window < size_ && window < lastWindow && !text.complete;
        const std::string row = text.found ? onOneRow(shownText(std::move(text), characters)) : std::string();
        if (!mayHaveMore || characterCount(row) > characters) return std::string(firstCharacters(row, characters));
    }
}

std::string onOneRow(std::string_view text) {
    std::string row = repairedUtf8(text);
    std::ranges::replace_if(
        row, [](char c) { return c == '\x1f' || c == '\n' || c == '\r' || c == '\0'; }, ' ');
    return row;
}

} // namespace vesk::maildir
