#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <exception>
#include <string>
#include <utility>

namespace vesk {

/// A failure of composing media, domain "VeskMediaOperations", code 64.
class MediaError : public ErrorRecord {
public:
    explicit MediaError(std::string description) : ErrorRecord("VeskMediaOperations", 64, std::move(description)) {}
};

/// Throws the framework's own `error`, or, where it has none, one that says `description`.
[[noreturn]] inline void throwMediaError(const std::exception_ptr& error, const char* description) {
    if (error) std::rethrow_exception(error);
    throw MediaError(description);
}

} // namespace vesk
