#include "VeskShellCore/AccessDenial.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(AccessDenial, IsTheCodeOfItsDomain) {
    const std::tuple<std::string, std::int64_t, bool> cases[] = {
        {"NSCocoaErrorDomain", 257, true},
        {"NSCocoaErrorDomain", 13, false},
        {"NSCocoaErrorDomain", 1, false},
        {"NSPOSIXErrorDomain", 1, true},
        {"NSPOSIXErrorDomain", 13, true},
        {"NSPOSIXErrorDomain", 2, false},
        {"NSPOSIXErrorDomain", 257, false},
        {"Other", 13, false},
        {"Other", 257, false},
    };
    for (const auto& [domain, code, denied] : cases)
        EXPECT_EQ(isAccessDenied(ErrorRecord(domain, code, "")), denied) << domain << " " << code;
}

TEST(AccessDenial, IsFoundUnderAnotherError) {
    const auto cause = std::make_shared<const ErrorRecord>("NSPOSIXErrorDomain", 13, "");
    const auto middle = std::make_shared<const ErrorRecord>("Other", 2, "", cause);
    EXPECT_TRUE(isAccessDenied(ErrorRecord("NSCocoaErrorDomain", 256, "", cause)));
    EXPECT_TRUE(isAccessDenied(ErrorRecord("NSCocoaErrorDomain", 256, "", middle)));
    const auto harmless = std::make_shared<const ErrorRecord>("NSPOSIXErrorDomain", 5, "");
    EXPECT_FALSE(isAccessDenied(ErrorRecord("NSCocoaErrorDomain", 256, "", harmless)));
}

} // namespace
} // namespace vesk
