#include "VeskCapabilityBroker/BrokerMain.hpp"

#include "VeskCapabilityBroker/CommandLineParser.hpp"
#include "VeskCapabilityBroker/Dispatch.hpp"
#include "VeskCapabilityBroker/FatalError.hpp"
#include "VeskCapabilityBroker/JsonOutput.hpp"
#include "VeskPlatform/SerialQueue.hpp"
#include "VeskSupport/RunToTheEnd.hpp"

#include <exception>

namespace vesk {
namespace {

Task<void> runCommand(const std::vector<std::string>& arguments, Platform& platform, ByteOutput& output) {
    const Arguments all(arguments);
    BrokerCommand command = parseCommand(all.empty() ? all : all.subspan(1));
    const AnyEncodable record = co_await dispatch(platform, std::move(command));
    writeJSON(record, output);
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
