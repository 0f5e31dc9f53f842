#pragma once

#include "vesk/CommandLine.hpp"

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>

namespace vesk {

/// A noun of the command line: its verbs, and where their values land. It lives as long as the application that it was
/// added to.
class CommandNoun {
public:
    virtual ~CommandNoun() = default;
    /// The command, where this noun was named; `usage` is the help of the innermost word that was. Throws UsageError.
    virtual std::optional<Command> parsed(const std::string& usage) = 0;
};

std::unique_ptr<CommandNoun> addBroker(CLI::App& app);
std::unique_ptr<CommandNoun> addChannel(CLI::App& app);
std::unique_ptr<CommandNoun> addCompose(CLI::App& app);
std::unique_ptr<CommandNoun> addConsent(CLI::App& app);
std::unique_ptr<CommandNoun> addDoctor(CLI::App& app);
std::unique_ptr<CommandNoun> addFiles(CLI::App& app);
std::unique_ptr<CommandNoun> addLiveness(CLI::App& app);
std::unique_ptr<CommandNoun> addRuntime(CLI::App& app);
std::unique_ptr<CommandNoun> addSecrets(CLI::App& app);
std::unique_ptr<CommandNoun> addSignIn(CLI::App& app);
std::unique_ptr<CommandNoun> addSignOut(CLI::App& app);
std::unique_ptr<CommandNoun> addTelegramBootstrap(CLI::App& app);
std::unique_ptr<CommandNoun> addUpdate(CLI::App& app);
std::unique_ptr<CommandNoun> addUpdateRecord(CLI::App& app);

} // namespace vesk
