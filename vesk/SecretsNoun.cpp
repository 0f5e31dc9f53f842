#include "VeskShellCore/KeychainStore.hpp"
#include "VeskSupport/Text.hpp"
#include "vesk/CommandNouns.hpp"

#include <utility>
#include <vector>

namespace vesk {
namespace {

class SecretsNoun : public CommandNoun {
public:
    explicit SecretsNoun(CLI::App& app) {
        command_.service = liveKeychainService;
        CLI::App& noun = *app.add_subcommand("secrets", "Secrets of the assistant, and archives of them");
        noun.require_subcommand(1);
        addAccount(addVerb(noun, SecretsVerb::set, "set", "Store the secret on standard input"));
        addAccount(addVerb(noun, SecretsVerb::read, "read", "Print a secret"));
        addAccount(addVerb(noun, SecretsVerb::remove, "delete", "Remove a secret"));
        addVerb(noun, SecretsVerb::presence, "presence", "Tell which secrets are set, without reading any");
        addFile(addVerb(noun, SecretsVerb::exportAll, "export", "Write an archive of the secrets, in the clear"));
        CLI::App* rehearse = noun.add_subcommand("rehearse", "Prove that an archive can be carried back");
        verbs_.emplace_back(SecretsVerb::rehearse, rehearse);
        addFile(*rehearse);
    }

    std::optional<Command> parsed(const std::string& usage) override {
        for (const auto& [verb, command] : verbs_) {
            if (!command->parsed()) continue;
            command_.verb = verb;
            const bool takesFile = verb == SecretsVerb::exportAll || verb == SecretsVerb::rehearse;
            if (takesFile && isBlank(command_.file)) throw UsageError(usage, "FILE names nothing.");
            if (!takesFile && verb != SecretsVerb::presence && isBlank(command_.account))
                throw UsageError(usage, "ACCOUNT names nothing.");
            return command_;
        }
        return std::nullopt;
    }

private:
    CLI::App& addVerb(CLI::App& noun, SecretsVerb verb, const std::string& name, const std::string& help) {
        CLI::App* command = noun.add_subcommand(name, help);
        verbs_.emplace_back(verb, command);
        command->add_option("--service", command_.service, "The service of the secrets, \"Vesk\" without it")
            ->type_name("NAME");
        return *command;
    }
    void addAccount(CLI::App& command) {
        command.add_option("account", command_.account, "The secret's name, such as OPENAI_API_KEY")
            ->required()
            ->type_name("ACCOUNT");
    }
    void addFile(CLI::App& command) {
        command.add_option("file", command_.file, "The archive's path")->required()->type_name("FILE");
    }

    std::vector<std::pair<SecretsVerb, CLI::App*>> verbs_;
    SecretsCommand command_;
};

} // namespace

std::unique_ptr<CommandNoun> addSecrets(CLI::App& app) { return std::make_unique<SecretsNoun>(app); }

} // namespace vesk
