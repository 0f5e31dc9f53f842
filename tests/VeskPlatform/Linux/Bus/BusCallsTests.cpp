#include "VeskPlatform/Linux/Bus/BusCalls.hpp"

#include "tests/support/BusService.hpp"
#include "tests/support/PrivateBus.hpp"

#include <atomic>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;

constexpr const char* interface = "org.example.Numbers";

/// Doubles numbers, and has one for a property. "Fail" fails; "Wait", and what is `unanswered`, is not answered.
class DoublingService : public BusService {
public:
    ~DoublingService() override { stop(); }

    std::atomic<int> waiting = 0;

protected:
    int answer(sd_bus_message& call) override {
        std::int32_t number = 0;
        if (is(call, interface, "Double", "i")) {
            sd_bus_message_read(&call, "i", &number);
            return reply(call, [&](sd_bus_message& message) { sd_bus_message_append(&message, "i", 2 * number); });
        }
        if (is(call, interface, "Wait")) return ++waiting;
        if (is(call, interface, "Fail")) return fail(call, "org.example.Failed", "as asked");
        if (is(call, "org.freedesktop.DBus.Properties", "Get", "ss"))
            return reply(call, [&](sd_bus_message& message) { sd_bus_message_append(&message, "v", "i", 42); });
        return 0;
    }
};

class BusCallsTests : public ::testing::Test {
protected:
    PrivateBus bus;
    DoublingService service;
    BusConnection connection{bus.address(), milliseconds(5000)};
    BusCalls calls{connection};
    const BusObject object{"org.example.Service", "/", interface};

    void SetUp() override { service.serve(bus.address(), object.service); }
    BusCalls::Take takeInto(std::vector<std::int64_t>& answers) {
        return [&answers](sd_bus_message& answer) { answers.push_back(readInteger(answer, 'i')); };
    }
    void finish(milliseconds patience = milliseconds(5000)) { calls.finish(steady_clock::now() + patience); }
};

TEST_F(BusCallsTests, NothingToAskIsFinished) {
    const auto start = steady_clock::now();
    finish();
    EXPECT_LT(steady_clock::now() - start, milliseconds(4000)) << "nothing is waited for";
}

TEST_F(BusCallsTests, ManyCallsAreAnsweredInTheirOrder) {
    std::vector<std::int64_t> answers, expected(2000);
    for (std::int32_t i = 0; i < 2000; ++i) {
        calls.add(object, "Double", takeInto(answers), "i", i);
        expected[static_cast<std::size_t>(i)] = std::int64_t{2} * i;
    }
    finish();
    EXPECT_EQ(answers, expected);
}

TEST_F(BusCallsTests, AnswersMayLeadToMoreCalls) {
    std::vector<std::int64_t> answers;
    calls.add(
        object, "Double",
        [&](sd_bus_message& answer) {
            const auto number = static_cast<std::int32_t>(readInteger(answer, 'i'));
            for (int i = 0; i < 300; ++i) calls.add(object, "Double", takeInto(answers), "i", number);
        },
        "i", std::int32_t{5});
    finish();
    EXPECT_EQ(answers, std::vector<std::int64_t>(300, 20));
}

TEST_F(BusCallsTests, OneRoundAfterAnother) {
    std::vector<std::int64_t> answers;
    for (std::int32_t round = 1; round <= 3; ++round) {
        calls.add(object, "Double", takeInto(answers), "i", round);
        finish();
    }
    EXPECT_EQ(answers, (std::vector<std::int64_t>{2, 4, 6}));
}

TEST_F(BusCallsTests, PropertiesAreReadWithTheirTypes) {
    std::vector<std::int64_t> answers, others;
    calls.addProperty(object, "Number", "i", takeInto(answers));
    calls.addProperty(object, "Number", "s", takeInto(others));
    finish();
    EXPECT_EQ(answers, std::vector<std::int64_t>{42});
    EXPECT_TRUE(others.empty());
}

TEST_F(BusCallsTests, FailuresAreNoAnswers) {
    std::vector<std::int64_t> answers;
    calls.add(object, "Fail", takeInto(answers));
    calls.add(object, "Unknown", takeInto(answers));
    calls.add({"org.example.Nobody", "/", interface}, "Double", takeInto(answers), "i", std::int32_t{1});
    calls.add(
        object, "Double", [](sd_bus_message& answer) { readText(answer); }, "i", std::int32_t{1});
    calls.add(object, "Double", takeInto(answers), "i", std::int32_t{4});
    finish();
    EXPECT_EQ(answers, std::vector<std::int64_t>{8});
}

TEST_F(BusCallsTests, TheDeadlineEndsTheWaiting) {
    service.change([&] { service.unanswered = "Fail"; });
    std::vector<std::int64_t> answers;
    calls.add(object, "Double", takeInto(answers), "i", std::int32_t{4});
    calls.add(object, "Fail", [](sd_bus_message&) { ADD_FAILURE() << "nobody answered"; });
    const auto start = steady_clock::now();
    finish(milliseconds(300));
    EXPECT_GE(steady_clock::now() - start, milliseconds(300));
    EXPECT_EQ(answers, std::vector<std::int64_t>{8});
    calls.add(object, "Double", takeInto(answers), "i", std::int32_t{5});
    finish();
    EXPECT_EQ(answers, (std::vector<std::int64_t>{8, 10})) << "what was not answered is forgotten";
}

TEST_F(BusCallsTests, FewerCallsAreOnTheirWayThanABusAllows) {
    for (int i = 0; i < 500; ++i) calls.add(object, "Wait", [](sd_bus_message&) {});
    finish(milliseconds(100));
    EXPECT_GT(service.waiting, 1);
    EXPECT_LT(service.waiting, 128);
}

TEST_F(BusCallsTests, AfterTheDeadlineNothingIsTaken) {
    std::vector<std::int64_t> answers;
    calls.add(object, "Double", takeInto(answers), "i", std::int32_t{4});
    finish(milliseconds(0));
    calls.add(object, "Double", takeInto(answers), "i", std::int32_t{5});
    finish();
    EXPECT_EQ(answers, std::vector<std::int64_t>{10});
}

TEST_F(BusCallsTests, AServiceThatGoesGivesNoMoreAnswers) {
    service.change([&] { service.unanswered = "Fail"; });
    std::vector<std::int64_t> answers;
    calls.add(object, "Fail", takeInto(answers));
    // The service is stopped by the answer of the bus itself, so that the other call is on its way by then.
    calls.add({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"}, "GetId",
              [&](sd_bus_message&) { service.stop(); });
    finish();
    EXPECT_TRUE(answers.empty());
}

TEST(BusCallsWithoutABusTests, NoBusNoAnswers) {
    auto bus = std::make_unique<PrivateBus>();
    BusConnection connection(bus->address(), milliseconds(5000));
    bus.reset();
    BusCalls calls(connection);
    const auto never = [](sd_bus_message&) { ADD_FAILURE() << "nobody can have answered"; };
    for (int round = 0; round < 2; ++round) {
        calls.add({"org.example.Service", "/", interface}, "Double", never, "i", std::int32_t{1});
        calls.finish(steady_clock::now() + milliseconds(5000));
    }
}

} // namespace
} // namespace vesk::test
