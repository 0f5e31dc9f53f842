#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <string>

namespace vesk {

/// What a command of the companion cannot do although every operation worked. Domain "VeskCompanion"; the code is the
/// kind's number.
class CompanionError : public ErrorRecord {
public:
    enum class Kind { noSession = 1, noGrant = 2, notKept = 3, noSignOut = 4, systemsOwn = 5 };

    CompanionError(Kind kind, const std::string& description)
        : ErrorRecord("VeskCompanion", static_cast<std::int64_t>(kind), description) {}
};

} // namespace vesk
