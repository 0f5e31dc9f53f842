#include "vesk/CommandLine.hpp"

#include "vesk/CommandNouns.hpp"

#include <algorithm>
#include <array>

namespace vesk {

namespace {

/// The help of the innermost command that was named.
std::string usageOf(const CLI::App& application) {
    const CLI::App* innermost = &application;
    for (auto named = innermost->get_subcommands(); !named.empty(); named = innermost->get_subcommands())
        innermost = named.front();
    std::string path;
    for (const CLI::App* app = innermost->get_parent(); app != nullptr; app = app->get_parent())
        path = app->get_name() + (path.empty() ? "" : " " + path);
    return innermost->help(path);
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
