#include "VeskSupport/Text.hpp"
#include "vesk/CommandNouns.hpp"

#include <map>
#include <utility>
#include <vector>

namespace vesk {
namespace {

class UpdateNoun : public CommandNoun {
public:
    explicit UpdateNoun(CLI::App& app) {
        CLI::App& noun = *app.add_subcommand("update", "Carry the assistant across an update of the application");
        noun.require_subcommand(1);
        CLI::App& prepare = addVerb(noun, UpdateVerb::prepare, "prepare", "Stop the assistant before the files change");
        addText(prepare, "--version", command_.version, "The version that is updated to", "VERSION");
        addText(prepare, "--build", command_.build, "Its build", "BUILD");
        addText(prepare, "--channel", command_.channel, "Its channel", "CHANNEL");
        addDesired(prepare);
        CLI::App& handoff = addVerb(noun, UpdateVerb::handoff, "handoff", "Say that the updater takes over");
        handoff.add_option("update", updateID_, "The update, a UUID")->required()->type_name("UUID");
        CLI::App& recover = addVerb(noun, UpdateVerb::recover, "recover", "Bring the assistant up after the relaunch");
        recover.add_option("--expect", updateID_, "The update that is expected")->type_name("UUID");
        addDesired(addVerb(noun, UpdateVerb::reconcile, "reconcile", "Match the runtime to this application"));
        addVerb(noun, UpdateVerb::show, "show", "Print what is kept of an update");
    }

    std::optional<Command> parsed(const std::string& usage) override {
        for (const auto& [verb, command] : verbs_) {
            if (!command->parsed()) continue;
            command_.verb = verb;
            if (command_.file && isBlank(*command_.file)) throw UsageError(usage, "PATH names nothing.");
            if (updateID_) command_.updateID = Uuid::parse(*updateID_);
            if (updateID_ && !command_.updateID) throw UsageError(usage, "\"" + *updateID_ + "\" is no UUID.");
            return command_;
        }
        return std::nullopt;
    }

private:
    static void addText(CLI::App& command, const char* name, std::string& value, const char* help, const char* type) {
        command.add_option(name, value, help)->required()->type_name(type);
    }

    CLI::App& addVerb(CLI::App& noun, UpdateVerb verb, const char* name, const char* help) {
        CLI::App& command = *noun.add_subcommand(name, help);
        verbs_.emplace_back(verb, &command);
        command.add_option("--file", command_.file, "The record's file, in place of the application's own")
            ->type_name("PATH");
        addCount(command, "--stop-polls", command_.stopPolls, "How often to look whether the assistant has stopped");
        addCount(command, "--activation-polls", command_.activationPolls, "How often to look whether it is up");
        addCount(command, "--poll-interval-ms", command_.pollIntervalMs, "The pause between two looks");
        command.add_option("--retry-delays-ms", command_.retryDelaysMs, "The pause before each attempt to recover")
            ->delimiter(',')
            ->check(CLI::Range(0, mostMilliseconds))
            ->type_name("A,B,...");
        return command;
    }

    static void addCount(CLI::App& command, const char* name, int& value, const char* help) {
        command.add_option(name, value, help)->check(CLI::Range(0, mostMilliseconds))->type_name("N");
    }

    void addDesired(CLI::App& command) {
        const std::map<std::string, bool> words{{"running", true}, {"stopped", false}};
        command.add_option("--desired", command_.desiredRunning, "running or stopped: what the user wants")
            ->transform(CLI::Transformer(words).description(""))
            ->type_name("STATE");
    }

    static constexpr int mostMilliseconds = 86'400'000; // a day

    std::vector<std::pair<UpdateVerb, CLI::App*>> verbs_;
    UpdateCommand command_;
    std::optional<std::string> updateID_;
};

} // namespace

std::unique_ptr<CommandNoun> addUpdate(CLI::App& app) { return std::make_unique<UpdateNoun>(app); }

} // namespace vesk
