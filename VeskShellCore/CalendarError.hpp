#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <string>

namespace vesk::VeskCalendarOperations {

/// A failure of a calendar operation, domain "VeskCalendarOperations".
class CalendarError : public ErrorRecord {
public:
    enum class Code {
        argumentMissing = 64,
        argumentInvalid = 400,
        accessRefused = 403,
        calendarNotFound = 404,
        accessUnknown = 500
    };

    CalendarError(Code code, std::string description)
        : ErrorRecord("VeskCalendarOperations", static_cast<std::int64_t>(code), std::move(description)) {}
};

} // namespace vesk::VeskCalendarOperations
