// The adapter over services of our own on private buses.

#include "VeskPlatform/Linux/Messaging/DeviceMessaging.hpp"

#include "tests/fakes/FakeKdeConnect.hpp"
#include "tests/fakes/FakeModemManager.hpp"
#include "tests/support/MessagingBuses.hpp"

#include <gtest/gtest.h>
#include <ostream>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace vesk {

void PrintTo(const ScriptRunResult& result, std::ostream* stream) {
    *stream << "status " << result.status << "\n" << result.output << "---\n" << result.errors;
}

namespace test {
namespace {

using std::chrono::milliseconds;
using Lines = std::vector<std::string>;

MessagesScript listing(std::int64_t limit) { return {"", {}, MessagesListQuestion{limit}}; }
MessagesScript sending(const std::string& recipient, const std::string& text) {
    return {"", {}, MessagesSendQuestion{recipient, text}};
}

ScriptRunResult listed(const std::string& output) { return {0, output, ""}; }
ScriptRunResult failed(const std::string& message) { return {1, "", message + "\n"}; }

FakeSms sms(const std::string& number, const std::string& timestamp) { return {number, "Text", timestamp}; }

class DeviceMessagingTests : public ::testing::Test {
protected:
    MessagingBuses buses;
    ScopedVariables variables{buses.variables()};
    FakeModemManager modemManager;
    FakeKdeConnect kdeConnect;
    MessagingPatience patience{.firstConversation = milliseconds(500), .nextConversation = milliseconds(100)};

    void serve() {
        modemManager.serveAt(buses.system.address());
        kdeConnect.serveAt(buses.session.address());
    }
    ScriptRunResult run(const MessagesScript& script) const { return DeviceMessaging(patience).run(script); }
    std::vector<MessagingServiceState> survey() const { return DeviceMessaging(patience).survey(); }
};

TEST_F(DeviceMessagingTests, WithoutServicesItSaysWhatToInstall) {
    const std::string text = "Neither ModemManager nor KDE Connect can be reached. Install modemmanager for a modem in "
                             "this computer, or kdeconnect for a phone.";
    EXPECT_EQ(run(listing(5)), failed(text));
    const ScopedVariables none{noBuses()};
    EXPECT_EQ(run(sending("1", "m")), failed(text));
}

TEST_F(DeviceMessagingTests, WithoutADeviceItSaysSo) {
    serve();
    EXPECT_EQ(run(listing(5)),
              failed("ModemManager has no device for text messages. KDE Connect has no device for text "
                     "messages."));
}

TEST_F(DeviceMessagingTests, AModemsChatsComeNewestFirst) {
    modemManager.modems = {
        {.messages = {sms("+491", "2026-11-20T10:00:00+01:00"), sms("+492", "2026-11-20T09:30:00Z"),
                      sms("+491", "2026-11-19T10:00:00+01:00"), sms("+493", "2026-11-21T10:00:00+01"), sms("+494", ""),
                      sms("+495", "lately")}}};
    serve();
    EXPECT_EQ(run(listing(50)), listed("+493\n+492\n+491\n+495\n+494\n"))
        << "those without a time last, the last made first";
    EXPECT_EQ(run(listing(2)), listed("+493\n+492\n"));
}

TEST_F(DeviceMessagingTests, AMessageThatVanishesIsPassedOver) {
    modemManager.modems = {
        {.messages = {sms("+491", "2026-11-20T10:00:00+01:00"), sms("+492", "2026-11-21T10:00:00Z")}}};
    modemManager.modems[0].messages[1].vanished = true;
    serve();
    EXPECT_EQ(run(listing(5)), listed("+491\n"));
}

TEST_F(DeviceMessagingTests, AModemSendsWhatItIsGiven) {
    modemManager.modems.resize(1);
    serve();
    EXPECT_EQ(run(sending("+4917612345", "\"Grüße\"\n\\ 'x'")), listed(""));
    EXPECT_EQ(modemManager.sent(), (Lines{"0 +4917612345 \"Grüße\"\n\\ 'x'"}));
}

TEST_F(DeviceMessagingTests, AnErrorOnSendIsTheServicesOwnMessageAndLeavesNoDraft) {
    modemManager.modems.resize(1);
    modemManager.sendError.emplace("org.freedesktop.ModemManager1.Error.Message.NetworkTimeout", "Network timeout");
    serve();
    EXPECT_EQ(run(sending("+491", "m")), failed("Network timeout"));
    EXPECT_EQ(modemManager.countOfMessages(0), 0U);
}

TEST_F(DeviceMessagingTests, TextThatIsNoUtf8IsRefused) {
    modemManager.modems.resize(1);
    serve();
    EXPECT_EQ(run(sending("+491", "\xff")), failed("D-Bus: Invalid argument"));
    EXPECT_EQ(modemManager.countOfMessages(0), 0U);
}

TEST_F(DeviceMessagingTests, AModemThatCannotSendSaysWhy) {
    struct Case {
        FakeModem modem;
        std::string obstacle;
    };
    const Case cases[] = {
        {{.state = 2, .messaging = false}, "is locked: unlock its SIM card (mmcli --sim=4 --pin=PIN)"},
        {{.state = 2, .messaging = false, .simPath = "/"}, "is locked: unlock its SIM card"},
        {{.state = 3}, "is switched off: enable it (mmcli --modem=0 --enable)"},
        {{.state = -1, .failedReason = 2, .messaging = false}, "has failed because its SIM card is missing"},
        {{.state = -1, .failedReason = 3, .messaging = false}, "has failed because its SIM card is faulty"},
        {{.state = -1, .failedReason = 99, .messaging = false}, "has failed for an unknown reason"},
        {{.state = 7}, "is not registered in a network"},
    };
    modemManager.modems.resize(1);
    modemManager.serveAt(buses.system.address());
    for (const Case& each : cases) {
        modemManager.stop();
        modemManager.modems = {each.modem};
        modemManager.serveAt(buses.system.address());
        EXPECT_EQ(run(sending("+491", "m")), failed("\"Sierra EM7455\" of ModemManager " + each.obstacle + "."));
        EXPECT_EQ(run(listing(5)), failed("\"Sierra EM7455\" of ModemManager " + each.obstacle + "."));
    }
}

TEST_F(DeviceMessagingTests, AModemForDataAloneIsNoDevice) {
    modemManager.modems = {{.messaging = false}};
    modemManager.serveAt(buses.system.address());
    EXPECT_EQ(run(listing(5)), failed("ModemManager has no device for text messages."));
}

TEST_F(DeviceMessagingTests, AModemWithoutAMakeIsNamedByItsNumber) {
    modemManager.modems = {{.manufacturer = "", .model = "", .state = 7}, {.manufacturer = "", .model = "E3372"}};
    modemManager.serveAt(buses.system.address());
    const auto devices = survey().front().devices;
    ASSERT_EQ(devices.size(), 2U);
    EXPECT_EQ(devices[0].name, "modem 0");
    EXPECT_EQ(devices[1].name, "E3372");
}

TEST_F(DeviceMessagingTests, TheFirstOfTwoModemsThatCanSendIsTaken) {
    modemManager.modems.resize(2);
    serve();
    EXPECT_EQ(run(sending("+491", "m")), listed(""));
    EXPECT_EQ(modemManager.sent(), (Lines{"0 +491 m"}));
    modemManager.stop();
    modemManager.modems = {{.state = 2, .messaging = false}, {}};
    modemManager.serveAt(buses.system.address());
    EXPECT_EQ(run(sending("+491", "m")), listed(""));
    EXPECT_EQ(modemManager.sent(), (Lines{"1 +491 m"}));
}

TEST_F(DeviceMessagingTests, AModemGoesBeforeAPhoneThatGoesBeforeALockedModem) {
    modemManager.modems.resize(1);
    kdeConnect.phones = {{.id = "p1", .name = "Fairphone"}};
    serve();
    EXPECT_EQ(run(sending("+491", "m")), listed(""));
    EXPECT_EQ(modemManager.sent().size(), 1U);
    EXPECT_TRUE(kdeConnect.sent().empty());
    modemManager.stop();
    modemManager.modems = {{.state = 2, .messaging = false}};
    modemManager.serveAt(buses.system.address());
    EXPECT_EQ(run(sending("+492", "n")), listed(""));
    EXPECT_EQ(kdeConnect.sent(), (Lines{"p1 +492 n"}));
}

TEST_F(DeviceMessagingTests, APhoneHasToBePairedAndReachable) {
    kdeConnect.phones = {{.id = "p1", .name = "Far", .reachable = false},
                         {.id = "p2", .name = "Strange", .paired = false},
                         {.id = "p3", .name = "Near"}};
    kdeConnect.serveAt(buses.session.address());
    EXPECT_EQ(run(sending("+491", "m")), listed(""));
    EXPECT_EQ(kdeConnect.sent(), (Lines{"p3 +491 m"}));
    kdeConnect.stop();
    kdeConnect.phones.pop_back();
    kdeConnect.serveAt(buses.session.address());
    EXPECT_EQ(run(sending("+491", "m")), failed("KDE Connect has no device for text messages."));
}

TEST_F(DeviceMessagingTests, APhoneWithoutItsPluginSaysSo) {
    kdeConnect.phones = {{.id = "p1", .name = "Near", .smsPlugin = false}};
    kdeConnect.serveAt(buses.session.address());
    EXPECT_EQ(run(sending("+491", "m")),
              failed("\"Near\" of KDE Connect carries no text messages: switch its SMS plugin "
                     "on in KDE Connect."));
}

TEST_F(DeviceMessagingTests, APhonesConversationsComeNewestFirst) {
    kdeConnect.phones = {{.id = "p1",
                          .name = "Near",
                          .known = {{{"+491"}, 1000}, {{"+492", "+493"}, 3000}, {{"+494"}, 2000}, {{}, 9000}}}};
    kdeConnect.serveAt(buses.session.address());
    EXPECT_EQ(run(listing(50)), listed("+492,+493\n+494\n+491\n"));
    EXPECT_EQ(run(listing(1)), listed("+492,+493\n"));
}

TEST_F(DeviceMessagingTests, ADaemonThatKnowsNothingYetAsksThePhone) {
    kdeConnect.phones = {{.id = "p1", .name = "Near", .onThePhone = {{{"+491"}, 1000}, {{"+492"}, 2000}}}};
    kdeConnect.serveAt(buses.session.address());
    EXPECT_EQ(run(listing(50)), listed("+492\n+491\n"));
}

TEST_F(DeviceMessagingTests, TheListingEndsSoonAfterTheLastConversation) {
    patience.firstConversation = std::chrono::seconds(20);
    kdeConnect.phones = {{.id = "p1", .name = "Near", .onThePhone = {{{"+491"}, 1000}}}};
    kdeConnect.serveAt(buses.session.address());
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(run(listing(50)), listed("+491\n"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, patience.firstConversation / 2);
}

TEST_F(DeviceMessagingTests, APhoneWithoutConversationsIsAnEmptyListing) {
    kdeConnect.phones = {{.id = "p1", .name = "Near"}};
    kdeConnect.serveAt(buses.session.address());
    EXPECT_EQ(run(listing(50)), listed(""));
}

TEST_F(DeviceMessagingTests, AServiceThatNeverAnswersEndsAtTheDeadline) {
    modemManager.modems.resize(1);
    patience.sending = milliseconds(60);
    modemManager.unanswered = "Send";
    modemManager.serveAt(buses.system.address());
    const std::string text = "org.freedesktop.ModemManager1 did not answer within 1 second.";
    EXPECT_EQ(run(sending("+491", "m")), failed(text));
    EXPECT_EQ(modemManager.countOfMessages(0), 1U) << "it may still be on its way";
    modemManager.stop();
    patience.request = patience.survey = milliseconds(60);
    modemManager.unanswered = "GetManagedObjects";
    modemManager.serveAt(buses.system.address());
    EXPECT_EQ(run(listing(5)), failed(text));
    const MessagingServiceState state = survey().front();
    EXPECT_EQ(state.presence, ServicePresence::running);
    EXPECT_EQ(state.trouble, text);
}

TEST_F(DeviceMessagingTests, ABusThatNeverAnswersEndsAtTheDeadline) {
    const TemporaryFolder folder;
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    (folder / "bus").copy(address.sun_path, sizeof address.sun_path - 1);
    const int silent = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    ASSERT_EQ(::bind(silent, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
    ASSERT_EQ(::listen(silent, 8), 0);
    const ScopedVariables mute({{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + folder / "bus"},
                                {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/session"}});
    patience.request = patience.survey = milliseconds(60);
    EXPECT_EQ(run(listing(5)), failed("The bus did not answer within 1 second."));
    EXPECT_EQ(survey().front().trouble, "The bus did not answer within 1 second.");
    patience.request = std::chrono::minutes(1);
    const auto before = std::chrono::steady_clock::now();
    DeviceMessaging(patience).start();
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::seconds(30)) << "a prompt waits for it";
    ::close(silent);
}

TEST_F(DeviceMessagingTests, AServiceThatNeverAnswersLeavesTheOther) {
    patience.request = milliseconds(500);
    modemManager.unanswered = "GetManagedObjects";
    kdeConnect.phones = {{.id = "p1", .name = "Near"}};
    serve();
    EXPECT_EQ(run(sending("+491", "m")), listed(""));
    EXPECT_EQ(kdeConnect.sent().size(), 1U);
}

TEST_F(DeviceMessagingTests, TheSurveyNamesServicesDevicesAndObstacles) {
    EXPECT_EQ(survey(), (std::vector<MessagingServiceState>{{"ModemManager", ServicePresence::absent, {}, ""},
                                                            {"KDE Connect", ServicePresence::absent, {}, ""}}));
    modemManager.modems = {{.state = 7}, {.model = "MC7700"}};
    kdeConnect.phones = {{.id = "p1", .name = "Near"}};
    serve();
    EXPECT_EQ(survey(), (std::vector<MessagingServiceState>{
                            {"ModemManager",
                             ServicePresence::running,
                             {{"Sierra EM7455", "is not registered in a network"}, {"Sierra MC7700", ""}},
                             ""},
                            {"KDE Connect", ServicePresence::running, {{"Near", ""}}, ""}}));
}

class DormantServiceTests : public DeviceMessagingTests {
protected:
    const std::string service = "org.freedesktop.ModemManager1";
    void allowStart(const std::string& program) { buses.system.addActivatable(service, program); }
};

TEST_F(DormantServiceTests, ASurveyStartsNothingAndARequestDoes) {
    allowStart(VESK_BINARY_DIR "/bin/VeskFakeModemManager");
    EXPECT_EQ(survey().front().presence, ServicePresence::dormant);
    EXPECT_EQ(survey().front().presence, ServicePresence::dormant) << "looking starts nothing";
    EXPECT_EQ(run(listing(5)), listed("+4930123\n"));
    EXPECT_EQ(survey().front().presence, ServicePresence::running);
}

TEST_F(DormantServiceTests, StartingIsLeftToTheBus) {
    allowStart(VESK_BINARY_DIR "/bin/VeskFakeModemManager");
    DeviceMessaging(patience).start();
    EXPECT_EQ(survey().front().presence, ServicePresence::running);
}

TEST_F(DormantServiceTests, OneThatDoesNotComeUpIsTheFailureOfTheRequestAlone) {
    allowStart("/bin/false");
    DeviceMessaging(patience).start();
    EXPECT_EQ(survey().front().presence, ServicePresence::dormant);
    const ScriptRunResult result = run(listing(5));
    EXPECT_EQ(result.status, 1);
    EXPECT_NE(result.errors.find("org.freedesktop.ModemManager1"), std::string::npos) << result.errors;
}

} // namespace
} // namespace test
} // namespace vesk
