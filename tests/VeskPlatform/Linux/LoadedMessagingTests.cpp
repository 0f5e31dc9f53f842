#include "VeskPlatform/Linux/LoadedMessaging.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "tests/support/MessagingBuses.hpp"

#include <gtest/gtest.h>

namespace vesk::test {
namespace {

TEST(ReachOfMessaging, FollowsServicesAndDevices) {
    using enum ServicePresence;
    const MessagingDevice locked{"A", "is locked"};
    struct Case {
        MessagingServiceState first, second;
        ApplicationReach reach;
    };
    const Case cases[] = {
        {{"M", absent, {}, ""}, {"K", absent, {}, ""}, ApplicationReach::absent},
        {{"M", running, {}, ""}, {"K", absent, {}, ""}, ApplicationReach::unready},
        {{"M", absent, {}, ""}, {"K", dormant, {}, ""}, ApplicationReach::unready},
        {{"M", running, {}, "No answer."}, {"K", absent, {}, ""}, ApplicationReach::unready},
        {{"M", absent, {}, "No answer of the bus."}, {"K", absent, {}, ""}, ApplicationReach::unready},
        {{"M", absent, {}, ""}, {"K", running, {{"B", ""}}, ""}, ApplicationReach::ready},
        {{"M", running, {locked}, ""}, {"K", absent, {}, ""}, ApplicationReach::ready},
    };
    int number = 0;
    for (const Case& each : cases) EXPECT_EQ(reachOfMessaging({each.first, each.second}), each.reach) << number++;
}

TEST(LoadedMessaging, AnswersThroughItsModule) {
    const ScopedVariables none{noBuses()};
    LoadedMessaging messaging(VESK_BINARY_DIR "/lib/vesk");
    const ScriptRunResult result = messaging.run({"", {}, MessagesListQuestion{5}});
    EXPECT_EQ(result.status, 1);
    EXPECT_TRUE(result.errors.starts_with("Neither ModemManager nor KDE Connect")) << result.errors;
    EXPECT_EQ(messaging.survey().size(), 2U);
    EXPECT_EQ(messaging.reach(), ApplicationReach::absent);
    messaging.start();
}

TEST(LoadedMessaging, WithoutItsModuleTheRequestTellsWhatToInstall) {
    LoadedMessaging messaging("/nonexistent");
    EXPECT_EQ(messaging.reach(), ApplicationReach::ready) << "nothing is known";
    messaging.start();
    EXPECT_THROW(messaging.survey(), AdapterModuleMissing);
    EXPECT_THROW(messaging.run({"", {}, MessagesListQuestion{5}}), AdapterModuleMissing);
}

} // namespace
} // namespace vesk::test
