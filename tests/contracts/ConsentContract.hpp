#pragma once

#include "VeskPlatform/Consent.hpp"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <asio/use_future.hpp>
#include <gtest/gtest.h>

namespace vesk::test {

/// What every Consent owes. `World` has `consent()`, `decide(service, status)`, and `answerWith(granted)` for the user
/// at the prompt.
template <class World> class ConsentContract : public ::testing::Test {
protected:
    World world;

    template <class T> T run(Task<T> task) {
        asio::io_context context(1);
        auto result = asio::co_spawn(context, std::move(task), asio::use_future);
        context.run();
        return result.get();
    }
};
TYPED_TEST_SUITE_P(ConsentContract);

inline constexpr PrivacyService allServices[] = {PrivacyService::microphone, PrivacyService::events,
                                                 PrivacyService::reminders, PrivacyService::contacts};

TYPED_TEST_P(ConsentContract, NothingIsDeterminedAtFirst) {
    for (const PrivacyService service : allServices) EXPECT_EQ(this->world.consent().authorizationStatus(service), 0);
    EXPECT_FALSE(this->world.consent().preflightScreenCapture());
    EXPECT_FALSE(this->world.consent().isProcessTrusted());
}

TYPED_TEST_P(ConsentContract, ADecisionIsSeenByTheNextProbeAndConcernsOneServiceOnly) {
    for (const int status : {1, 2, 3, 0}) {
        this->world.decide(PrivacyService::reminders, status);
        EXPECT_EQ(this->world.consent().authorizationStatus(PrivacyService::reminders), status);
        EXPECT_EQ(this->world.consent().authorizationStatus(PrivacyService::events), 0);
    }
}

TYPED_TEST_P(ConsentContract, ARequestReturnsAndLeavesTheUsersAnswer) {
    for (const bool granted : {true, false}) {
        const PrivacyService service = granted ? PrivacyService::events : PrivacyService::contacts;
        this->world.answerWith(granted);
        const AccessAnswer answer = this->run(this->world.consent().requestAccess(service));
        EXPECT_EQ(answer.granted, granted);
        EXPECT_FALSE(answer.error);
        EXPECT_EQ(this->world.consent().authorizationStatus(service), granted ? 3 : 2);
    }
}

REGISTER_TYPED_TEST_SUITE_P(ConsentContract, NothingIsDeterminedAtFirst,
                            ADecisionIsSeenByTheNextProbeAndConcernsOneServiceOnly,
                            ARequestReturnsAndLeavesTheUsersAnswer);

} // namespace vesk::test
