// Asks one of the requests of the real platform, as a program would, and tells the outcome on its terminal or output:
// "granted=G status=S resumed=N screen=B trusted=B".

#include "VeskPlatform/Consent.hpp"
#include "VeskPlatform/Linux/LinuxPlatform.hpp"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <cstdio>
#include <cstring>
#include <thread>

namespace vesk {
namespace {

struct Outcome {
    bool granted = false, onMainThread = false;
    int resumed = 0;
};

Task<void> request(Consent& consent, const char* what, Outcome& outcome) {
    const auto main = std::this_thread::get_id();
    if (std::strcmp(what, "screen_recording") == 0)
        co_await consent.requestScreenCapture();
    else if (std::strcmp(what, "accessibility") == 0)
        co_await consent.promptForProcessTrust();
    else
        outcome.granted = (co_await consent.requestAccess(PrivacyService::events)).granted;
    ++outcome.resumed;
    outcome.onMainThread = std::this_thread::get_id() == main;
}

int probe(const char* what) {
    LinuxPlatform platform(
        {.describeCapability =
             [](const std::string& id) { return std::pair("Title of " + id, std::string("Summary of it.")); },
         .log = [](const std::string&) {}});
    asio::io_context context(1);
    Outcome outcome;
    asio::co_spawn(context, request(platform.consent(), what, outcome), [](const std::exception_ptr& failure) {
        if (failure) std::rethrow_exception(failure);
    });
    context.run();
    Consent& consent = platform.consent();
    std::printf("granted=%d status=%d resumed=%d screen=%d trusted=%d\n", outcome.granted,
                consent.authorizationStatus(PrivacyService::events), outcome.onMainThread ? outcome.resumed : -1,
                consent.preflightScreenCapture(), consent.isProcessTrusted());
    return 0;
}

} // namespace
} // namespace vesk

int main(int argc, char** argv) { return argc == 2 ? vesk::probe(argv[1]) : 2; }
