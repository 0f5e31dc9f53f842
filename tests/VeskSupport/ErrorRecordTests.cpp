#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(ErrorRecord, RendersDomainCodeAndDescription) {
    const ErrorRecord error("VeskCapabilityBroker", 64, "Missing date. Use `x`");
    EXPECT_EQ(error.rendering(), "Error Domain=VeskCapabilityBroker Code=64 \"Missing date. Use `x`\" "
                                 "UserInfo={NSLocalizedDescription=Missing date. Use `x`}");
}

TEST(ErrorRecord, RendersOnOneLine) {
    const ErrorRecord error("D", -1,
                            "a\nb\r\nc\rd\xE2\x80\xA8"
                            "e\xC2\x85"
                            "f\vg");
    EXPECT_EQ(error.rendering(),
              "Error Domain=D Code=-1 \"a b c d e f g\" UserInfo={NSLocalizedDescription=a b c d e f g}");
}

TEST(ErrorRecord, KeepsTheUnderlyingFailure) {
    const ErrorRecord error("D", 1, "outer", std::make_shared<ErrorRecord>("E", 2, "inner"));
    ASSERT_NE(error.underlying(), nullptr);
    EXPECT_EQ(error.underlying()->code(), 2);
}

TEST(PosixErrorTest, NamesThePathAndTheSystemsText) {
    const PosixError error(ENOENT, "/tmp/x");
    EXPECT_EQ(error.rendering(), "Error Domain=NSPOSIXErrorDomain Code=2 \"/tmp/x: No such file or directory\" "
                                 "UserInfo={NSLocalizedDescription=/tmp/x: No such file or directory}");
}

TEST(SystemErrorNumber, IsThatOfTheFailureOrOfOneUnderIt) {
    EXPECT_EQ(systemErrorNumber(PosixError(EISDIR, "/tmp")), EISDIR);
    const auto inner = std::make_shared<ErrorRecord>("E", 2, "inner", std::make_shared<PosixError>(EACCES, "/tmp/x"));
    EXPECT_EQ(systemErrorNumber(ErrorRecord("D", 1, "outer", inner)), EACCES);
}

TEST(SystemErrorNumber, IsNoneOfAFailureWithoutOne) {
    EXPECT_EQ(systemErrorNumber(ErrorRecord("D", 1, "outer", std::make_shared<ErrorRecord>("E", 2, "inner"))),
              std::nullopt);
}

} // namespace
} // namespace vesk
