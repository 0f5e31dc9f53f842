// The built broker over messaging services of our own on private buses.

#include "VeskSupport/Json.hpp"
#include "tests/fakes/FakeKdeConnect.hpp"
#include "tests/fakes/FakeModemManager.hpp"
#include "tests/support/MessagingBuses.hpp"
#include "tests/support/ProgramRun.hpp"
#include "tests/support/TerminalRun.hpp"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {
namespace {

using testing::HasSubstr;
using testing::Not;

class MessagesProgram : public testing::Test {
protected:
    MessagingBuses buses;
    FakeModemManager modemManager;
    FakeKdeConnect kdeConnect;
    ProgramRun program{VESK_BINARY_DIR "/bin/VeskCapabilityBroker"};

    MessagesProgram() {
        program.environment["VESK_STATE_DIR"] = (program.folder() / "state").string();
        program.environment["VESK_APP_SUPPORT_DIR"] = (program.folder() / "support").string();
        for (const auto& [name, value] : buses.variables()) program.environment[name] = value;
    }

    void decide(const std::string& verb) {
        ProgramRun companion(VESK_BINARY_DIR "/bin/vesk");
        companion.environment = program.environment;
        const auto arguments = verb == "grant" ? std::vector<std::string>{"consent", "grant", "messages", "--yes"}
                                               : std::vector<std::string>{"consent", verb, "messages"};
        const auto result = companion.run(arguments);
        EXPECT_EQ(result.status, 0) << result;
    }
    /// A modem with two chats that may be used.
    void prepareModem() {
        modemManager.modems = {
            {.messages = {{.number = "+491", .text = {}, .timestamp = "2026-11-20T10:00:00+01:00"},
                          {.number = "+492", .text = {}, .timestamp = "2026-11-21T10:00:00+01:00"}}}};
        modemManager.serveAt(buses.system.address());
        decide("grant");
    }
    std::string succeed(const std::vector<std::string>& arguments) const {
        const ProgramResult result = program.run(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.output;
    }
    void expectFailure(const std::vector<std::string>& arguments, const std::string& domain, int code,
                       const std::string& text) const {
        const ProgramResult result = program.run(arguments);
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        EXPECT_THAT(result.errorOutput, HasSubstr("Domain=" + domain + " Code=" + std::to_string(code) + " "))
            << result;
        EXPECT_THAT(result.errorOutput, HasSubstr(text)) << result;
    }
    /// "STATE: DETAIL" of the report's row.
    std::string row(const std::vector<std::string>& arguments) const {
        const JsonValue answer = parseJson(succeed(arguments));
        const auto* object = &std::get<JsonValue::Object>(answer.value);
        if (const auto report = object->find("report"); report != object->end())
            object = &std::get<JsonValue::Object>(report->second.value); // what a request answers
        for (const JsonValue& each : std::get<JsonValue::Array>(object->at("capabilities").value)) {
            const auto& fields = std::get<JsonValue::Object>(each.value);
            const auto text = [&](const char* key) { return std::get<std::string>(fields.at(key).value); };
            if (text("kind") == "messages") return text("state") + ": " + text("detail");
        }
        return "no row";
    }
};

TEST_F(MessagesProgram, ListsChats) {
    prepareModem();
    EXPECT_THAT(succeed({"messages-list"}), HasSubstr(R"("chats" : [
    {
      "id" : "+492"
    },
    {
      "id" : "+491"
    }
  ],
  "detail" : "Listed recent Messages chats.",
  "limit" : 20
})"));
    EXPECT_THAT(succeed({"messages-list", "--limit", "1"}), Not(HasSubstr("+491")));
}

TEST_F(MessagesProgram, SendsAText) {
    prepareModem();
    const std::string output =
        succeed({"messages-send", "--phone", "+49 (176) 123-45", "--message", " \"Grüße\" \\n "});
    EXPECT_THAT(output, HasSubstr("\"messageLength\" : 10,\n  \"phone\" : \"+4917612345\"\n")) << output;
    EXPECT_EQ(modemManager.sent(), (std::vector<std::string>{"0 +4917612345 \"Grüße\" \\n"}));
}

TEST_F(MessagesProgram, SendsThroughAPhone) {
    kdeConnect.phones = {{.id = "p1", .name = "Fairphone"}};
    kdeConnect.serveAt(buses.session.address());
    decide("grant");
    EXPECT_THAT(succeed({"messages-send", "--phone", "1", "--message", "m"}), HasSubstr("Sent the message"));
    EXPECT_EQ(kdeConnect.sent(), (std::vector<std::string>{"p1 1 m"}));
}

TEST_F(MessagesProgram, AFailedSendIsTheServicesOwnMessage) {
    modemManager.sendError.emplace("org.freedesktop.ModemManager1.Error.Core.WrongState", "Modem not registered");
    prepareModem();
    expectFailure({"messages-send", "--phone", "1", "--message", "m"}, "VeskMessagesOperations", 1,
                  "\"Modem not registered\"");
}

TEST_F(MessagesProgram, ALockedModemMayBeUsedButSaysThatItIsLocked) {
    modemManager.modems = {{.state = 2, .messaging = false}};
    modemManager.serveAt(buses.system.address());
    decide("grant");
    EXPECT_EQ(row({"status"}), "granted: Vesk can use Messages when you ask.");
    expectFailure({"messages-list"}, "VeskMessagesOperations", 1, "is locked: unlock its SIM card");
}

TEST_F(MessagesProgram, TheGateRefusesWhatTheUserRefused) {
    prepareModem();
    decide("deny");
    expectFailure({"messages-send", "--phone", "1", "--message", "m"}, "VeskCapabilityBroker", 75,
                  "Messages access is not granted for Vesk.");
    EXPECT_TRUE(modemManager.sent().empty());
}

TEST_F(MessagesProgram, TheReportFollowsServiceDeviceAndConsent) {
    const std::string absent = "unavailable: Messages is not installed on this Mac.";
    EXPECT_EQ(row({"status"}), absent);
    EXPECT_EQ(row({"request", "messages"}), absent);
    kdeConnect.serveAt(buses.session.address());
    const std::string unreached = "unavailable: Messages could not be reached.";
    EXPECT_EQ(row({"status"}), unreached);
    EXPECT_EQ(row({"request", "messages"}), unreached);
    kdeConnect.stop();
    kdeConnect.phones = {{.id = "p1", .name = "Fairphone", .reachable = false}};
    kdeConnect.serveAt(buses.session.address());
    EXPECT_EQ(row({"status"}), unreached);
    kdeConnect.stop();
    kdeConnect.phones[0].reachable = true;
    kdeConnect.serveAt(buses.session.address());
    const std::string undecided = "not_determined: Messages access has not been requested yet.";
    EXPECT_EQ(row({"status"}), undecided);
    EXPECT_EQ(row({"request", "messages"}), undecided) << "there is nobody to ask";
    decide("deny");
    EXPECT_EQ(row({"status"}), "denied: Messages access is not granted for Vesk.");
    decide("grant");
    EXPECT_EQ(row({"status"}), "granted: Vesk can use Messages when you ask.");
}

TEST_F(MessagesProgram, TheUndecidedUserIsAskedOnceAtTheTerminal) {
    kdeConnect.phones = {{.id = "p1", .name = "Fairphone"}};
    kdeConnect.serveAt(buses.session.address());
    TerminalRun run({VESK_BINARY_DIR "/bin/VeskCapabilityBroker", "messages-send", "--phone", "1", "--message", "m"},
                    program.environment);
    run.waitFor("Messages");
    run.waitFor("[y/N] ");
    EXPECT_TRUE(kdeConnect.sent().empty());
    run.type("y\n");
    EXPECT_EQ(run.finish(), 0) << run.shown();
    EXPECT_EQ(kdeConnect.sent(), (std::vector<std::string>{"p1 1 m"}));
    EXPECT_EQ(row({"request", "messages"}), "granted: Vesk can use Messages when you ask.");
}

TEST_F(MessagesProgram, TheReportStartsNothingAndARequestDoes) {
    buses.system.addActivatable("org.freedesktop.ModemManager1", VESK_BINARY_DIR "/bin/VeskFakeModemManager");
    decide("grant");
    const std::string unreached = "unavailable: Messages could not be reached.";
    EXPECT_EQ(row({"status"}), unreached);
    EXPECT_EQ(row({"status"}), unreached) << "looking starts nothing";
    EXPECT_EQ(row({"request", "messages"}), "granted: Vesk can use Messages when you ask.");
    EXPECT_THAT(succeed({"messages-list"}), HasSubstr("+4930123"));
}

TEST_F(MessagesProgram, WithoutItsModuleItSaysWhatToInstall) {
    std::filesystem::create_directories(program.folder() / "bin");
    const auto alone = program.folder() / "bin/VeskCapabilityBroker";
    std::filesystem::copy_file(VESK_BINARY_DIR "/bin/VeskCapabilityBroker", alone);
    ProgramRun moved(alone);
    moved.environment = program.environment;
    decide("grant");
    const ProgramResult result = moved.run({"messages-list"});
    EXPECT_EQ(result.status, 1) << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("Domain=VeskAdapterModule Code=1 ")) << result;
    EXPECT_THAT(result.errorOutput, HasSubstr("install the package libsystemd0")) << result;
}

} // namespace
} // namespace vesk::test
