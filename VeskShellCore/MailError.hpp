#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <string>

namespace vesk::VeskMailOperations {

/// A failure of a script for the mail program, domain "VeskMailOperations".
class MailError : public ErrorRecord {
public:
    enum class Code { scriptFailed = 1, scriptNotMade = 500 };

    MailError(Code code, std::string description)
        : ErrorRecord("VeskMailOperations", static_cast<std::int64_t>(code), std::move(description)) {}
};

} // namespace vesk::VeskMailOperations
