#include "VeskSupport/Text.hpp"
#include "vesk/CommandNouns.hpp"

namespace vesk {
namespace {

class SignOutNoun : public CommandNoun {
public:
    explicit SignOutNoun(CLI::App& app) {
        CLI::App& noun = *app.add_subcommand("sign-out", "What is kept of a sign-out across relaunches");
        noun.require_subcommand(1);
        begin_ = noun.add_subcommand("begin", "Keep what the assistant should return to");
        begin_->add_flag("--installed", command_.installed, "The assistant is installed");
        begin_->add_flag("--running", command_.running, "The assistant is running, and so installed");
        advance_ = noun.add_subcommand("advance", "Keep how far it has come");
        advance_->add_option("phase", phase_, "stopping, assistant_stopped or signed_out")
            ->required()
            ->type_name("PHASE");
        finish_ = noun.add_subcommand("finish", "Forget it");
        show_ = noun.add_subcommand("show", "Print it");
    }

    std::optional<Command> parsed(const std::string& usage) override {
        if (begin_->parsed()) return withVerb(SignOutVerb::begin);
        if (finish_->parsed()) return withVerb(SignOutVerb::finish);
        if (show_->parsed()) return withVerb(SignOutVerb::show);
        if (!advance_->parsed()) return std::nullopt;
        const auto phase = fromRawValue<VeskAuthSignOutPhase>(phase_);
        if (!phase) throw UsageError(usage, "Unknown phase: " + repairedUtf8(phase_));
        command_.phase = *phase;
        return withVerb(SignOutVerb::advance);
    }

private:
    SignOutCommand withVerb(SignOutVerb verb) {
        command_.verb = verb;
        return command_;
    }

    CLI::App *begin_ = nullptr, *advance_ = nullptr, *finish_ = nullptr, *show_ = nullptr;
    SignOutCommand command_;
    std::string phase_;
};

} // namespace

std::unique_ptr<CommandNoun> addSignOut(CLI::App& app) { return std::make_unique<SignOutNoun>(app); }

} // namespace vesk
