#pragma once

#include "VeskSupport/ErrorRecord.hpp"

namespace vesk {

/// The session's display fails as a whole. Domain "VeskDisplay".
class X11Error : public ErrorRecord {
public:
    enum class Kind { unreachable = 1, lost = 2, silent = 3, incapable = 4 };

    X11Error(Kind kind, const std::string& description)
        : ErrorRecord("VeskDisplay", static_cast<std::int64_t>(kind), description), kind_(kind) {}
    Kind kind() const { return kind_; }

private:
    Kind kind_;
};

} // namespace vesk
