#include "VeskCapabilityBroker/ProgramEntry.hpp"

#include "VeskCapabilityBroker/BrokerMain.hpp"
#include "VeskCapabilityBroker/DescriptorOutput.hpp"

#include <csignal>
#include <unistd.h>

namespace vesk {

void prepareProcess() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    reserveStandardDescriptors();
}

int runProgram(int count, char** values, Platform& platform) {
    DescriptorOutput output(STDOUT_FILENO, "standard output");
    DescriptorOutput errorOutput(STDERR_FILENO, "standard error");
    return runBroker({values, values + count}, platform, output, errorOutput);
}

} // namespace vesk
