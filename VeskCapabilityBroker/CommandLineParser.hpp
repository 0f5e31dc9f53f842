#pragma once

#include "VeskCapabilityBroker/BrokerCommand.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

/// A command line, or a request file that it names, that asks for nothing that can be done. Domain
/// "VeskCapabilityBroker", code 64.
class UsageError : public ErrorRecord {
public:
    explicit UsageError(std::string message) : ErrorRecord("VeskCapabilityBroker", 64, std::move(message)) {}
};

/// Arguments behind argument zero, or behind the command word.
using Arguments = std::span<const std::string>;

/// The command that `arguments`, its word first, ask for. Values are only checked for being there, and for the few
/// ranges of numbers and words that a command names; what they mean is for the operation to judge. Each command is as
/// strict as it always was. Throws UsageError for the first fault. Touches nothing but its arguments.
BrokerCommand parseCommand(Arguments arguments);

/// Words with commas between them; each modifier once, in order of first appearance. Throws UsageError.
std::vector<CapabilityKeyModifier> parseModifiers(std::string_view value);

} // namespace vesk
