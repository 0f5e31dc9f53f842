#pragma once

#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/Instant.hpp"

#include <cstdint>
#include <string>

namespace vesk::maildir {

class MessageReader;

/// An open message file.
class MessageFile {
public:
    /// Never waits on a pipe. Throws PosixError, with EINVAL for what is no regular file.
    explicit MessageFile(const std::string& path);

    Instant modified() const { return modified_; }
    /// The headers and the empty line behind them, and some bytes more at most; a file without that line is all
    /// headers. Never more than a megabyte.
    std::string headerBytes() const;
    /// The first text of the message, at most `characters` of them as people count them, on one line: U+001F, line
    /// feeds and carriage returns are blanks. Reads no more of the file than that takes, and eight megabytes at most.
    /// Empty where the message has no text.
    std::string preview(const MessageReader& reader, std::size_t characters) const;

private:
    /// The first bytes of the file.
    std::string firstBytes(std::uint64_t count) const;

    std::string path_;
    FileDescriptor file_;
    Instant modified_{};
    std::uint64_t size_ = 0;
};

/// `text` with U+001F, line feeds and carriage returns as blanks, as well-formed UTF-8.
std::string onOneRow(std::string_view text);

} // namespace vesk::maildir
