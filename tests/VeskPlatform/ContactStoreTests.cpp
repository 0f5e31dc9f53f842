#include "VeskPlatform/Linux/Vcard/VcardContactStore.hpp"
#include "tests/contracts/ContactStoreContract.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeContactStore.hpp"
#include "tests/support/TemporaryFolder.hpp"

namespace vesk::test {
namespace {

struct FakeContactStoreWorld {
    FakeContactStore fake;
    ContactStore& store() { return fake; }
};

struct VcardContactStoreWorld {
    TemporaryFolder folder;
    FakeClock clock;
    VcardContactStore opened{{folder / "contacts", folder / "cache", "DE", [](const std::string&) {}}, clock};
    ContactStore& store() { return opened; }
};

using Worlds = ::testing::Types<FakeContactStoreWorld, VcardContactStoreWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, ContactStoreContract, Worlds);

} // namespace
} // namespace vesk::test
