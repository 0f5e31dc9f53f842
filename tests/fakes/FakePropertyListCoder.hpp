#pragma once

#include "VeskPlatform/PropertyListCoder.hpp"
#include "VeskSupport/Json.hpp"

#include <map>
#include <mutex>
#include <string>

namespace vesk::test {

/// Hands out a name for each list that it is given, and gives the list back for the name.
class FakePropertyListCoder : public PropertyListCoder {
public:
    std::map<std::string, PropertyListValue> lists;

    std::string encodeBinary(const PropertyListValue& value) override {
        const std::scoped_lock lock(mutex_);
        const std::string name = "bplist00 " + std::to_string(lists.size());
        lists.emplace(name, value);
        return name;
    }
    PropertyListValue decode(const std::string& bytes) override {
        const std::scoped_lock lock(mutex_);
        const auto found = lists.find(bytes);
        if (found == lists.end())
            throw DecodingError(DecodingError::Kind::corrupt, "The data is not a valid property list.");
        return found->second;
    }

private:
    std::mutex mutex_; // called from threads
};

} // namespace vesk::test
