#pragma once

#include "VeskPlatform/PropertyListCoder.hpp"

namespace vesk {

/// NSPropertyListSerialization.
class FoundationPropertyListCoder : public PropertyListCoder {
public:
    std::string encodeBinary(const PropertyListValue& value) override;
    PropertyListValue decode(const std::string& bytes) override;
};

} // namespace vesk
