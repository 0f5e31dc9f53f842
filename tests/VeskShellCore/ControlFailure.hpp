#pragma once

#include "VeskShellCore/NativeControlError.hpp"

#include <gtest/gtest.h>
#include <string>

namespace vesk::test {

/// "CODE TEXT" of the NativeControlError that `work` throws.
template <class Work> std::string controlFailureOf(Work work) {
    try {
        work();
    } catch (const NativeControlError& error) {
        EXPECT_EQ(error.domain(), "VeskCapabilityBroker");
        return std::to_string(error.code()) + " " + error.description();
    }
    return "no failure";
}

} // namespace vesk::test
