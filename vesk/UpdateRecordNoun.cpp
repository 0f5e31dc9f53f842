#include "VeskSupport/Text.hpp"
#include "vesk/CommandNouns.hpp"

namespace vesk {
namespace {

class UpdateRecordNoun : public CommandNoun {
public:
    explicit UpdateRecordNoun(CLI::App& app) {
        CLI::App& noun = *app.add_subcommand("update-record", "What is kept of an update across the relaunch");
        noun.require_subcommand(1);
        addFile(*(show_ = noun.add_subcommand("show", "Print the record")));
        addFile(*(delete_ = noun.add_subcommand("delete", "Remove the record")));
        delete_->add_option("--expect", expected_, "Only where the record is this update's")->type_name("UUID");
    }

    std::optional<Command> parsed(const std::string& usage) override {
        if (!show_->parsed() && !delete_->parsed()) return std::nullopt;
        command_.verb = delete_->parsed() ? UpdateRecordVerb::remove : UpdateRecordVerb::show;
        if (command_.file && isBlank(*command_.file)) throw UsageError(usage, "PATH names nothing.");
        if (expected_) command_.expectedUpdateID = Uuid::parse(*expected_);
        if (expected_ && !command_.expectedUpdateID)
            throw UsageError(usage, "--expect needs a UUID, not \"" + *expected_ + "\".");
        return command_;
    }

private:
    void addFile(CLI::App& command) {
        command.add_option("--file", command_.file, "The record's file, in place of the application's own")
            ->type_name("PATH");
    }

    CLI::App* show_ = nullptr;
    CLI::App* delete_ = nullptr;
    UpdateRecordCommand command_;
    std::optional<std::string> expected_;
};

} // namespace

std::unique_ptr<CommandNoun> addUpdateRecord(CLI::App& app) { return std::make_unique<UpdateRecordNoun>(app); }

} // namespace vesk
