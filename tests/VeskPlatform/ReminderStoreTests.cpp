#include "VeskPlatform/Linux/Vdir/VdirReminderStore.hpp"
#include "tests/contracts/ReminderStoreContract.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeReminderStore.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace vesk::test {
namespace {

struct FakeReminderStoreWorld {
    FakeReminderStore fake;
    ReminderStore& store() { return fake; }
};

struct VdirReminderStoreWorld {
    TemporaryFolder folder;
    FakeClock clock;
    VdirReminderStore opened{{folder / "reminders", "UTC", [](const std::string&) {}}, clock};
    ReminderStore& store() { return opened; }
};

using Worlds = ::testing::Types<FakeReminderStoreWorld, VdirReminderStoreWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, ReminderStoreContract, Worlds);

} // namespace
} // namespace vesk::test
