// The argument parser. The input is the arguments, a line feed between them.

#include "VeskCapabilityBroker/CommandLineParser.hpp"
#include "VeskSupport/Text.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::vector<std::string> arguments = text.empty() ? std::vector<std::string>{} : vesk::split(text, '\n');
    try {
        const vesk::BrokerCommand command = vesk::parseCommand(arguments);
        if (vesk::commandWord(command) != arguments.at(0)) std::abort();
    } catch (const vesk::UsageError& error) {
        if (error.code() != 64 || error.description().empty()) std::abort();
    }
    return 0;
}
