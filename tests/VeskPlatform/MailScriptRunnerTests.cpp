#include "tests/contracts/MailScriptRunnerContract.hpp"

namespace vesk::test {
namespace {

struct FakeMailWorld {
    FakeMail mail;
    MailScriptRunner& runner() { return mail; }
    void deliver(const FakeMailMessage& message) { mail.messages.insert(mail.messages.begin(), message); }
};

using Worlds = ::testing::Types<FakeMailWorld>;
INSTANTIATE_TYPED_TEST_SUITE_P(All, MailScriptRunnerContract, Worlds);

} // namespace
} // namespace vesk::test
