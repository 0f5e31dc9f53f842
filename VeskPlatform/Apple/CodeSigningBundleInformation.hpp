#pragma once

#include "VeskPlatform/BundleInformation.hpp"

namespace vesk {

/// The information dictionary that NSBundle reads, and the entitlements in the signature of a file on disk.
class CodeSigningBundleInformation : public BundleInformation {
public:
    JsonValue::Object informationDictionary(const Bundle& bundle) override;
    JsonValue::Object entitlements(const std::string& path) override;
};

} // namespace vesk
