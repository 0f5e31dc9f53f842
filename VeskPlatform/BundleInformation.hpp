#pragma once

#include "VeskPlatform/Bundle.hpp"
#include "VeskSupport/Json.hpp"

#include <string>

namespace vesk {

/// What files say about programs. Values that JSON has no word for (dates, bytes) are null; real numbers are doubles.
/// Read afresh at each call, on the main executor. Neither call fails: what cannot be read is not there.
class BundleInformation {
public:
    virtual ~BundleInformation() = default;

    /// The information dictionary of a bundle, empty for a bundle without one.
    virtual JsonValue::Object informationDictionary(const Bundle& bundle) = 0;
    /// The rights that the signature of the file or bundle at `path` grants; empty where nothing is signed or granted.
    virtual JsonValue::Object entitlements(const std::string& path) = 0;
};

} // namespace vesk
