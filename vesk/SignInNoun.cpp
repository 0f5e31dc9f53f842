#include "VeskSupport/Text.hpp"
#include "vesk/CommandNouns.hpp"

#include <utility>
#include <vector>

namespace vesk {
namespace {

class SignInNoun : public CommandNoun {
public:
    explicit SignInNoun(CLI::App& app) {
        CLI::App& noun = *app.add_subcommand("sign-in", "Sign in to the account by a link in a mail");
        noun.require_subcommand(1);
        CLI::App& start = addVerb(noun, SignInVerb::start, "start", "Have a link sent to an address");
        start.add_option("email", command_.email, "The account's address")->required()->type_name("EMAIL");
        CLI::App& redeem = addVerb(noun, SignInVerb::redeem, "redeem",
                                   "Trade the grant of a link, on standard input, for the account's credentials");
        redeem.add_flag("--pending", command_.pending, "Take the grant that was kept from a failed try");
        for (CLI::App* verb : {&start, &redeem})
            verb->add_option("--base-url", command_.baseURL, "The service, in place of the build's own")
                ->type_name("URL");
        addVerb(noun, SignInVerb::status, "status", "Tell what is pending");
        addVerb(noun, SignInVerb::cancel, "cancel", "Forget what is pending");
    }

    std::optional<Command> parsed(const std::string& usage) override {
        for (const auto& [verb, command] : verbs_) {
            if (!command->parsed()) continue;
            command_.verb = verb;
            if (verb == SignInVerb::start && isBlank(command_.email)) throw UsageError(usage, "EMAIL names nobody.");
            return command_;
        }
        return std::nullopt;
    }

private:
    CLI::App& addVerb(CLI::App& noun, SignInVerb verb, const std::string& name, const std::string& help) {
        return *verbs_.emplace_back(verb, noun.add_subcommand(name, help)).second;
    }

    std::vector<std::pair<SignInVerb, CLI::App*>> verbs_;
    SignInCommand command_;
};

} // namespace

std::unique_ptr<CommandNoun> addSignIn(CLI::App& app) { return std::make_unique<SignInNoun>(app); }

} // namespace vesk
