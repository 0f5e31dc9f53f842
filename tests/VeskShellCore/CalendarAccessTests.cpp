#include "VeskShellCore/CalendarAccess.hpp"

#include "tests/VeskShellCore/CalendarWorld.hpp"

namespace vesk::VeskCalendarOperations {
namespace {

class CalendarAccess : public test::CalendarWorld {
protected:
    /// The lines of the debug log without their times.
    std::vector<std::string> logLines() {
        platform.fakeLogQueue.drain();
        std::vector<std::string> lines;
        for (const auto& [path, bytes] : platform.fakePrivateFiles.files)
            for (std::size_t start = 0, end; (end = bytes.find('\n', start)) != std::string::npos; start = end + 1) {
                const std::size_t message = bytes.find("] ", start) + 2;
                lines.push_back(bytes.substr(message, end - message));
            }
        return lines;
    }
    std::vector<std::string>& requests = platform.fakeConsent.requests;
};

TEST_F(CalendarAccess, FullAccessPassesWithoutAQuestion) {
    test::runTask(ensureCalendarAccess(platform));
    EXPECT_TRUE(requests.empty());
    EXPECT_TRUE(logLines().empty());
}

TEST_F(CalendarAccess, RefusedStatesFailWithTheirRemedyAndWithoutAQuestion) {
    const std::pair<AuthorizationStatus, const char*> cases[] = {
        {1, "403 Calendar access is restricted by macOS or device policy."},
        {2, "403 Calendar access was denied for Vesk. Enable Calendar access in System Settings and try again."},
        {4, "403 Vesk only has write-only Calendar access. Enable full Calendar access in System Settings and try "
            "again."},
        {5, "500 Calendar authorization returned an unknown state."},
        {-1, "500 Calendar authorization returned an unknown state."},
    };
    for (const auto& [status, failure] : cases) {
        grant(status);
        EXPECT_EQ(failureOf(ensureCalendarAccess(platform)), failure) << status;
    }
    EXPECT_TRUE(requests.empty());
}

TEST_F(CalendarAccess, AnUndecidedUserIsAskedOnceAndMayGrant) {
    grant(0);
    platform.fakeConsent.answer.granted = true;
    test::runTask(ensureCalendarAccess(platform));
    EXPECT_EQ(requests, std::vector<std::string>{"access 1"});
}

TEST_F(CalendarAccess, AnUndecidedUserMayRefuse) {
    grant(0);
    EXPECT_EQ(failureOf(ensureCalendarAccess(platform)), "403 Calendar access was not granted for Vesk. Enable "
                                                         "Calendar access in System Settings and try again.");
    EXPECT_EQ(requests, std::vector<std::string>{"access 1"});
}

TEST_F(CalendarAccess, TheAnswerAndNotTheStateDecides) {
    grant(0);
    platform.fakeConsent.answer.granted = true;
    platform.fakeConsent.statusAfterAnswer = 2;
    EXPECT_NO_THROW(test::runTask(ensureCalendarAccess(platform)));
}

TEST_F(CalendarAccess, TheQuestionIsLoggedBeforeItIsAskedAndWithItsOutcome) {
    grant(0);
    platform.fakeConsent.answer.granted = true;
    platform.fakeConsent.statusAfterAnswer = 3;
    std::vector<std::string> before;
    platform.fakeConsent.onPrompt = [&] { before = logLines(); };
    EXPECT_TRUE(test::runTask(requestEventAccess(platform)));
    EXPECT_EQ(before, std::vector<std::string>{"calendar-operation requestFullAccess begin status=not_determined"});
    EXPECT_EQ(logLines().back(),
              "calendar-operation requestFullAccess completed granted=true status=full_access error=none");
    EXPECT_EQ(logLines().size(), 2u);
}

TEST_F(CalendarAccess, AnErrorOfTheQuestionIsOnlyLogged) {
    grant(0);
    platform.fakeConsent.answer = {false, "No display."};
    EXPECT_FALSE(test::runTask(requestEventAccess(platform)));
    EXPECT_EQ(logLines().back(),
              "calendar-operation requestFullAccess completed granted=false status=not_determined error=No display.");
}

TEST_F(CalendarAccess, EachStatusHasItsLabelInTheLog) {
    const std::pair<AuthorizationStatus, const char*> cases[] = {
        {0, "not_determined"}, {1, "restricted"}, {2, "denied"},  {3, "full_access"},
        {4, "write_only"},     {5, "unknown"},    {-1, "unknown"}};
    for (const auto& [status, label] : cases) {
        platform.fakePrivateFiles.files.clear();
        grant(status);
        test::runTask(requestEventAccess(platform));
        EXPECT_EQ(logLines().front(), std::string("calendar-operation requestFullAccess begin status=") + label);
    }
}

} // namespace
} // namespace vesk::VeskCalendarOperations
