#pragma once

#include "VeskCapabilityBroker/CommandLineParser.hpp"

#include <gtest/gtest.h>
#include <string>
#include <variant>
#include <vector>

namespace vesk::test {

/// A command line and what it parses to: a command, or the message of a usage error.
struct ParserCase {
    std::vector<std::string> arguments;
    std::variant<BrokerCommand, std::string> expected;
};

inline std::string shown(const std::vector<std::string>& arguments) {
    std::string result;
    for (const std::string& argument : arguments) result += "[" + argument + "] ";
    return result;
}

inline void expectParses(const ParserCase& c) {
    SCOPED_TRACE(shown(c.arguments));
    try {
        const BrokerCommand command = parseCommand(c.arguments);
        const auto* expected = std::get_if<BrokerCommand>(&c.expected);
        if (expected == nullptr)
            ADD_FAILURE() << "parsed, but should fail with: " << std::get<std::string>(c.expected);
        else
            EXPECT_TRUE(command == *expected) << "parsed as another " << commandWord(command);
    } catch (const UsageError& error) {
        const auto* expected = std::get_if<std::string>(&c.expected);
        EXPECT_EQ(error.domain(), "VeskCapabilityBroker");
        EXPECT_EQ(error.code(), 64);
        if (expected == nullptr)
            ADD_FAILURE() << "should parse, but fails with: " << error.description();
        else
            EXPECT_EQ(error.description(), *expected);
    }
}

inline void expectAllParse(const std::vector<ParserCase>& cases) {
    for (const ParserCase& c : cases) expectParses(c);
}

} // namespace vesk::test
