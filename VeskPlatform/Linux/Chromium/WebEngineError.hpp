#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <string>
#include <utility>

namespace vesk {

/// The engine that lays out HTML is missing (1), did not start (2), ended or answered wrongly (3), or took too long
/// (4). Domain "VeskWebEngine".
class WebEngineError : public ErrorRecord {
public:
    enum class Kind { missing = 1, notStarted = 2, broken = 3, timedOut = 4 };

    WebEngineError(Kind kind, std::string description)
        : ErrorRecord("VeskWebEngine", static_cast<std::int64_t>(kind), std::move(description)) {}
};

} // namespace vesk
