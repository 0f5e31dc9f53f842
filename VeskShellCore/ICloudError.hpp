#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <string>
#include <utility>

namespace vesk {

/// A failure of the cloud files, domain "VeskICloudOperations". 400: not configured, or the path or its item is of the
/// wrong kind; 403: no access; 404: nothing there; 409: something is there already; else the number of a system error.
class ICloudError : public ErrorRecord {
public:
    ICloudError(std::int64_t code, std::string description)
        : ErrorRecord("VeskICloudOperations", code, std::move(description)) {}
};

} // namespace vesk
