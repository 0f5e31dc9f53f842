#pragma once

#include "VeskSupport/Instant.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace vesk::maildir {

/// What people see of a message's headers. Texts are meant as UTF-8; damaged mail may make them ill-formed. A header
/// that is missing is empty.
struct MessageHeaders {
    std::string messageId; ///< Without angle brackets.
    std::string sender;    ///< `Name <address>` or the bare address, decoded.
    std::string subject;   ///< Decoded and unfolded.
    /// The date of the topmost Received header, else of Date; none where neither can be read.
    std::optional<Instant> date;

    bool operator==(const MessageHeaders&) const = default;
};

/// The part of a message that shows what it says, as UTF-8 (with the same caution) and as it stands.
struct MessageText {
    std::string text;
    bool isHtml = false;
    /// Whether a text was found, and whether it ends before the bytes do.
    bool found = false, complete = false;

    bool operator==(const MessageText&) const = default;
};

/// Reads mail messages (RFC 5322, MIME). Anything is a message; nothing fails. Safe from several threads at a time.
class MessageReader {
public:
    virtual ~MessageReader() = default;
    /// `bytes` begin a message; what stands behind the first empty line is not looked at.
    virtual MessageHeaders headers(std::string_view bytes) const = 0;
    /// `bytes` begin a message or are all of it. The text is the first part of a text type that is not blank, the plain
    /// one of alternatives; calendars, and after them attached files, only where there is nothing else.
    virtual MessageText text(std::string_view bytes) const = 0;
};

/// The function `vesk_message_reader` of the module "gmime"; what it returns lives as long as the process.
using MessageReaderFunction = const MessageReader*();

} // namespace vesk::maildir
