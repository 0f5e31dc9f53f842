#include "vesk/CommandLine.hpp"

#include "vesk/CommandNouns.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace vesk {

namespace {

/// The innermost command that was named.
const CLI::App& namedCommand(const CLI::App& application) {
    const CLI::App* innermost = &application;
    for (auto named = innermost->get_subcommands(); !named.empty(); named = innermost->get_subcommands())
        innermost = named.front();
    return *innermost;
}

std::string usageOf(const CLI::App& application) {
    const CLI::App& named = namedCommand(application);
    std::string path;
    for (const CLI::App* app = named.get_parent(); app != nullptr; app = app->get_parent())
        path = app->get_name() + (path.empty() ? "" : " " + path);
    return named.help(path);
}

/// What is one argument too many for these may be the secret itself, which no error may hold.
bool takesSecret(const CLI::App& command) {
    constexpr std::array<std::string_view, 5> names{"set", "redeem", "set-secrets", "telegram-token-validate",
                                                    "connector-connect"};
    return std::ranges::find(names, command.get_name()) != names.end();
}

} // namespace

Command parseCommandLine(std::vector<std::string> arguments) {
    CLI::App app("The companion of the Vesk assistant on Linux", "vesk");
    bool version = false, json = false;
    app.set_help_flag("-h,--help", "Print this help and exit");
    app.add_flag("--version", version, "Print version and build");
    app.add_flag("--json", json, "With --version: print JSON, with the addresses of the services");
    const std::array nouns{
        addConsent(app), addDoctor(app),   addCompose(app),      addFiles(app),   addRuntime(app),
        addBroker(app),  addLiveness(app), addUpdateRecord(app), addChannel(app), addTelegramBootstrap(app),
        addSecrets(app), addSignIn(app),   addSignOut(app),      addUpdate(app)};
    std::reverse(arguments.begin(), arguments.end()); // CLI11 takes them from the back
    try {
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        return HelpCommand{usageOf(app)};
    } catch (const CLI::ExtrasError& error) {
        const bool mayTellSecret = takesSecret(namedCommand(app));
        throw UsageError(usageOf(app), mayTellSecret ? "An argument was not expected; a secret comes on standard input."
                                                     : error.what());
    } catch (const CLI::ParseError& error) {
        throw UsageError(usageOf(app), error.what());
    }
    for (const auto& noun : nouns)
        if (auto command = noun->parsed(usageOf(app))) return *std::move(command);
    if (!version)
        throw UsageError(usageOf(app), json ? "--json needs --version or a command." : "A command is needed.");
    return VersionCommand{json};
}

} // namespace vesk
