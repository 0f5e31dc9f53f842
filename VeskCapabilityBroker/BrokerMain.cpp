#include "VeskCapabilityBroker/BrokerMain.hpp"

#include "VeskCapabilityBroker/CommandLineParser.hpp"
#include "VeskCapabilityBroker/Dispatch.hpp"
#include "VeskCapabilityBroker/FatalError.hpp"
#include "VeskCapabilityBroker/JsonOutput.hpp"
#include "VeskPlatform/SerialQueue.hpp"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <exception>

namespace vesk {
namespace {

Task<void> runCommand(const std::vector<std::string>& arguments, Platform& platform, ByteOutput& output) {
    const Arguments all(arguments);
    BrokerCommand command = parseCommand(all.empty() ? all : all.subspan(1));
    const AnyEncodable record = co_await dispatch(platform, std::move(command));
    writeJSON(record, output);
}

/// Runs the task until it has ended. Throws what it throws.
void runToTheEnd(Task<void> task) {
    asio::io_context executor(1);
    bool ended = false;
    std::exception_ptr failure;
    asio::co_spawn(executor, std::move(task), [&](std::exception_ptr thrown) {
        ended = true;
        failure = std::move(thrown);
    });
    executor.run();
    // Nothing left to run and no answer: something dropped the task that waited for it.
    if (!ended) throw ErrorRecord("VeskCapabilityBroker", 70, "The command ended without an answer.");
    if (failure) std::rethrow_exception(failure);
}

void drainLog(Platform& platform) noexcept {
    try {
        platform.logQueue().drain();
    } catch (...) { // the log never fails a run
    }
}

} // namespace

int runBroker(const std::vector<std::string>& arguments, Platform& platform, ByteOutput& output,
              ByteOutput& errorOutput) noexcept {
    int status = 0;
    try {
        runToTheEnd(runCommand(arguments, platform, output));
    } catch (...) {
        status = 1;
        writeFatalError(std::current_exception(), errorOutput);
    }
    drainLog(platform);
    return status;
}

} // namespace vesk
