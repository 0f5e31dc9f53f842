#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <string>
#include <utility>

namespace vesk {

/// A failure of seeing or driving the desktop, domain "VeskCapabilityBroker".
class NativeControlError : public ErrorRecord {
public:
    NativeControlError(std::int64_t code, std::string description)
        : ErrorRecord("VeskCapabilityBroker", code, std::move(description)) {}
};

} // namespace vesk
