#include "VeskPlatform/Linux/SqliteConsent.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Linux/ConsentPrompt.hpp"
#include "VeskSupport/Iso8601.hpp"

#include <asio/co_spawn.hpp>
#include <asio/thread_pool.hpp>
#include <asio/use_awaitable.hpp>

namespace vesk {

namespace {

std::string rowOf(PrivacyService service) {
    switch (service) {
    case PrivacyService::microphone: return "microphone";
    case PrivacyService::events: return "calendar";
    case PrivacyService::reminders: return "reminders";
    case PrivacyService::contacts: return "contacts";
    }
    return {};
}

constexpr const char* screenRow = "screen_recording";
constexpr const char* trustRow = "accessibility";
constexpr AuthorizationStatus notDetermined = static_cast<int>(ConsentState::notDetermined);
constexpr AuthorizationStatus granted = static_cast<int>(ConsentState::granted);

} // namespace

std::string consentRow(const std::string& capabilityId) {
    return capabilityId == "system_audio" ? screenRow : capabilityId;
}

SqliteConsent::SqliteConsent(ConsentDatabase database, ConsentPrompt& prompt, Clock& clock, DescribeCapability describe)
    : database_(std::move(database)), prompt_(prompt), clock_(clock), describe_(std::move(describe)) {}

SqliteConsent::~SqliteConsent() = default;

AuthorizationStatus SqliteConsent::statusOf(const std::string& row) {
    try {
        const ConsentState state =
            waitedInVain_ ? database_.state(row, std::chrono::milliseconds(0)) : database_.state(row);
        waitedInVain_ = false;
        return static_cast<AuthorizationStatus>(state);
    } catch (const ConsentDatabaseError&) {
        waitedInVain_ = true;
        return -1; // a probe never fails; the companion program tells what is wrong
    }
}

AuthorizationStatus SqliteConsent::authorizationStatus(PrivacyService service) { return statusOf(rowOf(service)); }
bool SqliteConsent::preflightScreenCapture() { return statusOf(screenRow) == granted; }
bool SqliteConsent::isProcessTrusted() { return statusOf(trustRow) == granted; }

Task<AccessAnswer> SqliteConsent::requestAccess(PrivacyService service) { return requestRow(rowOf(service)); }
Task<void> SqliteConsent::requestScreenCapture() { co_await requestRow(screenRow); }
Task<void> SqliteConsent::promptForProcessTrust() { co_await requestRow(trustRow); }

Task<AccessAnswer> SqliteConsent::requestRow(std::string row) {
    const AuthorizationStatus status = statusOf(row);
    if (status != notDetermined) co_return AccessAnswer{status == granted, std::nullopt};
    if (!thread_) thread_ = std::make_unique<asio::thread_pool>(1);
    // The awaiting coroutine is resumed on its own executor, and its work is counted there while it waits. The task is
    // a variable of its own, since g++ 12 destroys temporaries of an awaited expression twice.
    Task<AccessAnswer> question = askAndStore(row);
    co_return co_await asio::co_spawn(*thread_, std::move(question), asio::use_awaitable);
}

Task<AccessAnswer> SqliteConsent::askAndStore(std::string row) {
    const auto [title, summary] = describe_(row);
    const auto given = prompt_.ask(title, summary);
    if (!given || given->answer == PromptAnswer::undecided) co_return AccessAnswer{};
    const auto state = given->answer == PromptAnswer::grant ? ConsentState::granted : ConsentState::denied;
    try {
        // Another run may have asked the same at the same time: the answer that came first stands.
        const auto standing = database_.decideFirst(row, {state, given->givenIn, formatUtcMilliseconds(clock_.now())});
        co_return AccessAnswer{standing == ConsentState::granted, std::nullopt};
    } catch (const ConsentDatabaseError& error) {
        co_return AccessAnswer{false, error.description()};
    }
}

} // namespace vesk
