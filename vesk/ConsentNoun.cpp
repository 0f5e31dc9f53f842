#include "vesk/CommandNouns.hpp"

#include <utility>
#include <vector>

namespace vesk {
namespace {

class ConsentNoun : public CommandNoun {
public:
    explicit ConsentNoun(CLI::App& app) {
        CLI::App* noun = app.add_subcommand("consent", "What the assistant may do");
        noun->require_subcommand(1);
        addVerb(*noun, ConsentVerb::list, "list", "List the capabilities and what was decided");
        addVerb(*noun, ConsentVerb::grant, "grant", "Allow capabilities, after a question on the terminal");
        addVerb(*noun, ConsentVerb::deny, "deny", "Refuse capabilities");
        addVerb(*noun, ConsentVerb::reset, "reset", "Forget what was decided");
        page_ = noun->add_subcommand("page", "Show the page of a settings address on the desktop");
        page_->add_option("url", pageCommand_.url, "The settings address")->required()->type_name("URL");
    }

    std::optional<Command> parsed(const std::string& usage) override {
        for (const auto& [verb, command] : verbs_) {
            if (!command->parsed()) continue;
            command_.verb = verb;
            command_.usage = usage;
            if (verb != ConsentVerb::list && command_.all == !command_.names.empty())
                throw UsageError(usage, "Name capabilities, or use --all.");
            return command_;
        }
        if (!page_->parsed()) return std::nullopt;
        pageCommand_.usage = usage;
        return pageCommand_;
    }

private:
    void addVerb(CLI::App& noun, ConsentVerb verb, const std::string& name, const std::string& help) {
        CLI::App* command = noun.add_subcommand(name, help);
        verbs_.emplace_back(verb, command);
        command->add_flag("--json", command_.json, "Print JSON");
        if (verb == ConsentVerb::list) return;
        command->add_option("name", command_.names, "Identifiers of capabilities")->type_name("NAME");
        command->add_flag("--all", command_.all, "All capabilities that have a consent");
        if (verb == ConsentVerb::grant) command->add_flag("--yes", command_.yes, "Answer the question with yes");
    }

    std::vector<std::pair<ConsentVerb, CLI::App*>> verbs_;
    CLI::App* page_ = nullptr;
    ConsentCommand command_;
    ConsentPageCommand pageCommand_;
};

} // namespace

std::unique_ptr<CommandNoun> addConsent(CLI::App& app) { return std::make_unique<ConsentNoun>(app); }

} // namespace vesk
