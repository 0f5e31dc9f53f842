#include "vesk/Linux/DoctorMessaging.hpp"

#include "tests/fakes/FakeKdeConnect.hpp"
#include "tests/support/MessagingBuses.hpp"
#include "tests/vesk/CompanionTest.hpp"

namespace vesk::test {
namespace {

struct Case {
    const char* name;
    std::vector<MessagingServiceState> states;
    std::string service;
    std::vector<std::string> problems;
};

MessagingServiceState modems(ServicePresence presence, std::vector<MessagingDevice> devices = {},
                             std::string trouble = {}) {
    return {"ModemManager", presence, std::move(devices), std::move(trouble)};
}
MessagingServiceState phones(ServicePresence presence, std::vector<MessagingDevice> devices = {}) {
    return {"KDE Connect", presence, std::move(devices), ""};
}

TEST(DoctorMessaging, NamesServiceDeviceAndWhatIsAmiss) {
    using enum ServicePresence;
    const Case cases[] = {
        {"nothing",
         {modems(absent), phones(absent)},
         "ModemManager or KDE Connect",
         {"Neither messaging service is on its bus."}},
        {"no device", {modems(running), phones(absent)}, "ModemManager", {"No device for text messages is there."}},
        {"dormant", {modems(dormant), phones(running)}, "ModemManager (started when it is asked) or KDE Connect", {}},
        {"the first", {modems(running, {{"A", ""}, {"B", ""}}), phones(running, {{"C", ""}})}, "ModemManager: A", {}},
        {"locked",
         {modems(running, {{"A", "is locked"}}), phones(running, {{"C", ""}})},
         "KDE Connect: C",
         {"\"A\" of ModemManager is locked."}},
        {"dead", {modems(running, {}, "No answer."), phones(absent)}, "ModemManager", {"No answer."}},
    };
    for (const Case& each : cases) {
        const DoctorService result = messagingService(each.states);
        std::vector<std::string> problems;
        for (const DoctorFinding& finding : result.findings) problems.push_back(finding.problem);
        EXPECT_EQ(result.service, each.service) << each.name;
        EXPECT_EQ(problems, each.problems) << each.name;
    }
}

struct DoctorMessagingProgram : CompanionTest {};

TEST_F(DoctorMessagingProgram, LooksAtTheBuses) {
    const auto messages = [this] {
        const JsonValue report = json({"doctor", "--json"});
        for (const JsonValue& each : listAt(report, "capabilities"))
            if (textAt(each, "id") == "messages") return textAt(each, "service");
        return std::string();
    };
    EXPECT_EQ(messages(), "ModemManager or KDE Connect");
    const MessagingBuses buses;
    for (const auto& [name, value] : buses.variables()) program.environment[name] = value;
    FakeKdeConnect service;
    service.phones = {{.id = "p1", .name = "Fairphone"}};
    service.serveAt(buses.session.address());
    EXPECT_EQ(messages(), "KDE Connect: Fairphone");
}

} // namespace
} // namespace vesk::test
