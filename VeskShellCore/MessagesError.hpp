#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <string>

namespace vesk::VeskMessagesOperations {

/// A failure of the messages operations, domain "VeskMessagesOperations". The code is 400 for an argument, else the
/// exit status of the script runner.
class MessagesError : public ErrorRecord {
public:
    static constexpr std::int64_t argumentInvalid = 400;

    MessagesError(std::int64_t code, std::string description)
        : ErrorRecord("VeskMessagesOperations", code, std::move(description)) {}
};

} // namespace vesk::VeskMessagesOperations
