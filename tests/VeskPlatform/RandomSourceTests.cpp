#include "VeskPlatform/Linux/RandomUuid.hpp"
#include "VeskPlatform/Linux/SystemRandomSource.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "tests/contracts/RandomSourceContract.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/RefusedCalls.hpp"

#include <sys/syscall.h>

namespace vesk::test {
namespace {

using Sources = ::testing::Types<FakeRandomSource, SystemRandomSource>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, RandomSourceContract, Sources);

TEST(SystemRandomSourceTests, ASystemWithoutRandomNumbersFails) {
    EXPECT_EQ(inChild([] {
                  refuseCall(SYS_getrandom, ENOSYS);
                  std::array<std::uint8_t, 4> bytes{};
                  try {
                      SystemRandomSource().fill(bytes);
                      return 0;
                  } catch (const PosixError& error) {
                      return static_cast<int>(error.code());
                  }
              }),
              ENOSYS);
}

TEST(RandomUuidTests, TheAdaptersTextIsInLowerCase) {
    const std::string text = randomUuid();
    const auto uuid = Uuid::parse(text);
    ASSERT_TRUE(uuid) << text;
    EXPECT_EQ(uuid->lowercaseText(), text);
    EXPECT_NE(randomUuid(), text);
}

} // namespace
} // namespace vesk::test
