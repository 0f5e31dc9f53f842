#pragma once

#include <cstdint>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// The base of every failure: a domain, a numeric code within it and a sentence for people.
/// Thrown where the text of the failure is decided, caught once in `main`. Derived classes exist so that callers branch
/// on type and code; none adds wording of its own.
class ErrorRecord : public std::exception {
public:
    ErrorRecord(std::string domain, std::int64_t code, std::string description,
                std::shared_ptr<const ErrorRecord> underlying = nullptr);

    const std::string& domain() const noexcept { return domain_; }
    std::int64_t code() const noexcept { return code_; }
    /// The localized description.
    const std::string& description() const noexcept { return description_; }
    /// The failure that caused this one, or null.
    const ErrorRecord* underlying() const noexcept { return underlying_.get(); }
    const char* what() const noexcept override { return description_.c_str(); }

    /// `Error Domain=D Code=N "TEXT" UserInfo={NSLocalizedDescription=TEXT}` on one line: line breaks become blanks.
    std::string rendering() const;

private:
    std::string domain_;
    std::int64_t code_;
    std::string description_;
    std::shared_ptr<const ErrorRecord> underlying_;
};

/// A failed system call, domain "NSPOSIXErrorDomain", code `errno`. The description is the path and the system's text.
class PosixError : public ErrorRecord {
public:
    PosixError(int errnoValue, std::string_view path);
};

/// The `errno` that a failure comes from: its own code, or that of one under it, in the domain "NSPOSIXErrorDomain".
std::optional<int> systemErrorNumber(const ErrorRecord& error);

/// `text` with each line break (also CR LF as one) written as one blank.
std::string onOneLine(std::string_view text);

} // namespace vesk
