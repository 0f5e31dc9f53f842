#include "VeskSupport/Text.hpp"
#include "vesk/CommandNouns.hpp"

#include <array>
#include <charconv>
#include <string_view>
#include <system_error>

namespace vesk {
namespace {

/// What a verb of a runtime's tool takes beside its own word.
enum class Takes { nothing, id, memory, account };
enum class Input { none, text, document };

struct VerbShape {
    RuntimeVerb verb;
    std::string_view help;
    Takes takes = Takes::nothing;
    Input input = Input::none;
};

using enum RuntimeVerb;

constexpr std::array bootstrapShapes{
    VerbShape{status, "Tell how the service is"},
    VerbShape{start, "Start the service"},
    VerbShape{stop, "Stop the service"},
    VerbShape{restart, "Stop the service and start it again"},
    VerbShape{activate, "Say after an update whether the assistant should run"},
    VerbShape{recordUpdateActivation, "Report what an update came to", Takes::nothing, Input::document},
    VerbShape{doctor, "Let the runtime examine itself"},
    VerbShape{connectors, "List the connectors"},
    VerbShape{connectorDetail, "Tell of one connector", Takes::id},
    VerbShape{connectorInstall, "Install a connector", Takes::id},
    VerbShape{connectorConnect, "Connect a connector, by an address or an API key", Takes::id},
    VerbShape{connectorDisconnect, "Disconnect a connector", Takes::id},
    VerbShape{telegramTokenValidate, "Ask whether a bot's token is good", Takes::nothing, Input::text},
    VerbShape{telegramBindingStatus, "Tell whether the bot has its owner"},
    VerbShape{memories, "List the memories"},
    VerbShape{memoryCreate, "Keep a new memory", Takes::nothing, Input::text},
    VerbShape{memoryUpdate, "Change a memory", Takes::memory, Input::text},
    VerbShape{init, "Set the runtime up", Takes::nothing, Input::document},
    VerbShape{installCoreTools, "Install the tools that the runtime needs"},
    VerbShape{prepareRuntime, "Make the runtime ready to be launched"},
    VerbShape{completeOnboarding, "End the onboarding"},
    VerbShape{installLaunchAgent, "Install the service"},
    VerbShape{uninstallLaunchAgent, "Remove the service"},
};

constexpr std::array settingsShapes{
    VerbShape{print, "Print the settings"},
    VerbShape{merge, "Merge settings into those that are there", Takes::nothing, Input::document},
    VerbShape{setSecrets, "Keep secrets, by the names of their accounts", Takes::nothing, Input::document},
    VerbShape{deleteSecret, "Forget a secret", Takes::account},
};

class RuntimeNoun : public CommandNoun {
public:
    explicit RuntimeNoun(CLI::App& app) {
        CLI::App& noun = *app.add_subcommand("runtime", "The packaged runtime of the assistant");
        noun.require_subcommand(1);
        verbs_.emplace_back(locate, noun.add_subcommand("locate", "Tell where the runtime is"));
        CLI::App& bootstrap = *noun.add_subcommand("bootstrap", "The runtime's tool for setting up and running");
        bootstrap.require_subcommand(1);
        for (const VerbShape& shape : bootstrapShapes) addVerb(bootstrap, shape);
        CLI::App& settings = *noun.add_subcommand("settings", "The runtime's tool for settings and secrets");
        settings.require_subcommand(1);
        for (const VerbShape& shape : settingsShapes) addVerb(settings, shape);
    }

    std::optional<Command> parsed(const std::string& usage) override {
        for (const auto& [verb, command] : verbs_) {
            if (!command->parsed()) continue;
            command_.verb = verb;
            if (verb == memoryUpdate) command_.memoryId = memoryId(usage);
            if (verb == activate && command_.running == stopped_)
                throw UsageError(usage, "One of --running and --stopped is needed.");
            if (verb == connectorConnect && command_.email.has_value() == command_.standardInput)
                throw UsageError(usage, "One of --email and --stdin is needed.");
            return command_;
        }
        return std::nullopt;
    }

private:
    /// Decimal and in range: any other reading of the text would change another memory than was meant.
    std::int64_t memoryId(const std::string& usage) const {
        std::int64_t number = 0;
        const char* const end = memory_.data() + memory_.size();
        const auto [rest, failure] = std::from_chars(memory_.data(), end, number);
        if (failure != std::errc() || rest != end)
            throw UsageError(usage, "Could not convert: id = " + repairedUtf8(memory_));
        return number;
    }

    void addVerb(CLI::App& tool, const VerbShape& shape) {
        CLI::App& command = *tool.add_subcommand(std::string(rawValue(shape.verb)), std::string(shape.help));
        verbs_.emplace_back(shape.verb, &command);
        if (shape.takes == Takes::id)
            command.add_option("id", command_.subject, "The connector")->required()->type_name("ID");
        if (shape.takes == Takes::account)
            command.add_option("account", command_.subject, "The secret's account")->required()->type_name("ACCOUNT");
        if (shape.takes == Takes::memory)
            command.add_option("id", memory_, "The memory")->required()->type_name("NUMBER");
        if (shape.input == Input::text) addInput(command, "Take the text from standard input")->required();
        if (shape.input == Input::document) addInput(command, "Take the JSON document from standard input")->required();
        addFlags(command, shape.verb);
    }

    void addFlags(CLI::App& command, RuntimeVerb verb) {
        if (verb == activate) {
            command.add_flag("--running", command_.running, "It should run");
            command.add_flag("--stopped", stopped_, "It should not");
        }
        if (verb == connectorInstall)
            command.add_flag("--force", command_.force, "Install it also where it is installed");
        if (verb == connectorConnect || verb == connectorDisconnect)
            command.add_option("--email", command_.email, "The account's address")->type_name("EMAIL");
        if (verb == connectorConnect) addInput(command, "Take the API key from standard input");
    }

    CLI::Option* addInput(CLI::App& command, const std::string& help) {
        return command.add_flag("--stdin", command_.standardInput, help);
    }

    std::vector<std::pair<RuntimeVerb, CLI::App*>> verbs_;
    RuntimeCommand command_;
    std::string memory_;
    bool stopped_ = false;
};

class BrokerNoun : public CommandNoun {
public:
    explicit BrokerNoun(CLI::App& app) {
        CLI::App& noun = *app.add_subcommand("broker", "Ask the capability broker as the shell does");
        noun.require_subcommand(1);
        status_ = noun.add_subcommand("status", "Tell how all capabilities stand");
        request_ = noun.add_subcommand("request", "Ask the user for a capability");
        request_->add_option("name", name_, "The capability's identifier")->required()->type_name("NAME");
    }

    std::optional<Command> parsed(const std::string& usage) override {
        if (status_->parsed()) return BrokerCommand{};
        if (!request_->parsed()) return std::nullopt;
        const auto kind = fromRawValue<CapabilityKind>(name_);
        if (!kind) throw UsageError(usage, "Unknown capability: " + repairedUtf8(name_));
        return BrokerCommand{kind};
    }

private:
    CLI::App* status_ = nullptr;
    CLI::App* request_ = nullptr;
    std::string name_;
};

} // namespace

std::unique_ptr<CommandNoun> addRuntime(CLI::App& app) { return std::make_unique<RuntimeNoun>(app); }
std::unique_ptr<CommandNoun> addBroker(CLI::App& app) { return std::make_unique<BrokerNoun>(app); }

} // namespace vesk
