// Runs a packaged runtime's status again and again, bare and through the shell's client, in turns; and 500 times at
// once. Prints the figures as JSON. Argument: the root of the runtime.

#include "VeskPlatform/Linux/LinuxPlatform.hpp"
#include "VeskPlatform/Linux/Pipe.hpp"
#include "VeskPlatform/Linux/ProgramSpawn.hpp"
#include "VeskShellCore/VeskRuntimeLocator.hpp"
#include "VeskShellCore/VeskShellClient.hpp"
#include "VeskSupport/RunToTheEnd.hpp"
#include "tests/support/DescriptorLimit.hpp"
#include "tests/support/HeldProcessResources.hpp"

#include <algorithm>
#include <array>
#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <chrono>
#include <fcntl.h>
#include <iostream>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace vesk {
namespace {

using Milliseconds = std::chrono::duration<double, std::milli>;

constexpr int rounds = 201, atOnce = 500;

template <class Work> double millisecondsOf(const Work& work) {
    const auto begun = std::chrono::steady_clock::now();
    work();
    return Milliseconds(std::chrono::steady_clock::now() - begun).count();
}

double median(std::vector<double> values) {
    std::ranges::sort(values);
    return values[values.size() / 2];
}

/// The runtime's own time: nothing but what every start of a program costs.
void runBare(const std::string& daemon) {
    const std::vector<std::string> arguments{daemon, "bootstrap", "status"};
    auto output = makePipe();
    if (!output) throw PosixError(errno, daemon);
    ProgramSpawn spawn;
    spawn.useNull(STDIN_FILENO, O_RDONLY);
    spawn.useDescriptor(STDOUT_FILENO, output->writing.get());
    pid_t child = -1;
    if (const int failure = spawn.start(child, daemon, argumentPointers(arguments), environ); failure != 0)
        throw PosixError(failure, daemon);
    output->writing.reset();
    std::array<char, 65536> block{};
    while (::read(output->reading.get(), block.data(), block.size()) > 0) {
    }
    ::waitpid(child, nullptr, 0);
}

VeskRuntimeDescriptor runtimeAt(Platform& platform, const std::string& root) {
    return VeskRuntimeLocator::descriptor(platform, VeskRuntimeDescriptor::Source::explicitEnvironment,
                                          root + "/manifest.json");
}

Task<void> ask(VeskShellClient client) { co_await client.serviceStatus(); }

JsonValue measureTurns(const VeskShellClient& client) {
    std::vector<double> bare, asked;
    for (int round = 0; round < rounds; ++round) {
        bare.push_back(millisecondsOf([&] { runBare(client.runtime().daemonPath); }));
        asked.push_back(millisecondsOf([&] { runToTheEnd(ask(client)); }));
    }
    return {JsonValue::Object{{"bare", {median(bare)}}, {"asked", {median(asked)}}}};
}

void askManyAtOnce(const VeskShellClient& client) {
    asio::io_context executor(1);
    for (int i = 0; i < atOnce; ++i)
        asio::co_spawn(executor, ask(client), [](const std::exception_ptr& failure) {
            if (failure) std::rethrow_exception(failure);
        });
    executor.run();
}

std::int64_t threads() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), std::filesystem::directory_iterator());
}

/// Threads that have answered may still be on their way out.
std::int64_t threadsLeft(std::int64_t before) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(2);
    while (threads() > before && std::chrono::steady_clock::now() < deadline) std::this_thread::yield();
    return threads() - before;
}

JsonValue measureMany(const VeskShellClient& client) {
    const std::int64_t before = threads();
    const auto held = test::HeldProcessResources::now();
    const double milliseconds = millisecondsOf([&] { askManyAtOnce(client); });
    const std::int64_t threadsMore = threadsLeft(before);
    const auto left = test::HeldProcessResources::now();
    const auto more = [](const auto& now, const auto& then) {
        return static_cast<std::int64_t>(now.size()) - static_cast<std::int64_t>(then.size());
    };
    return {JsonValue::Object{{"runs", {std::int64_t{atOnce}}},
                              {"milliseconds", {milliseconds}},
                              {"descriptorsLeft", {more(left.descriptors, held.descriptors)}},
                              {"childrenLeft", {more(left.children, held.children)}},
                              {"threadsLeft", {threadsMore}}}};
}

int run(const std::string& root) {
    const test::DescriptorLimit limit;
    limit.raise(10'000);
    LinuxPlatform platform({.describeCapability = {}, .log = [](const std::string&) {}});
    const VeskShellClient client(platform, runtimeAt(platform, root));
    runToTheEnd(ask(client)); // what is made once is made
    const JsonValue turns = measureTurns(client), many = measureMany(client);
    std::cout << writeJson({JsonValue::Object{{"turns", turns}, {"many", many}}}) << std::endl;
    return 0;
}

} // namespace
} // namespace vesk

int main(int count, char** arguments) {
    try {
        if (count == 2) return vesk::run(arguments[1]);
        std::cerr << "Usage: RuntimeRuns ROOT\n";
    } catch (const std::exception& failure) {
        std::cerr << "RuntimeRuns: " << failure.what() << "\n";
    }
    return 1;
}
