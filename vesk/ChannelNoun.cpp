#include "vesk/CommandNouns.hpp"

namespace vesk {
namespace {

class ChannelNoun : public CommandNoun {
public:
    explicit ChannelNoun(CLI::App& app) {
        CLI::App& noun = *app.add_subcommand("channel", "The channels of releases");
        noun.require_subcommand(1);
        check_ = noun.add_subcommand("check", "Tell whether a release's manifest belongs to the installed channel");
        check_->add_option("--installed", command_.channel, "The installed channel")->required()->type_name("CHANNEL");
        check_->add_option("--manifest", command_.manifestFile, "The manifest, a JSON file")
            ->required()
            ->type_name("FILE");
        urls_ = noun.add_subcommand("urls", "Print the addresses of a channel, and of a release in it");
        urls_->add_option("--channel", command_.channel, "The channel")->required()->type_name("CHANNEL");
        urls_->add_option("--version", command_.version, "The release's version")->type_name("VERSION");
    }

    std::optional<Command> parsed(const std::string&) override {
        if (!check_->parsed() && !urls_->parsed()) return std::nullopt;
        command_.verb = check_->parsed() ? ChannelVerb::check : ChannelVerb::urls;
        return command_;
    }

private:
    CLI::App* check_ = nullptr;
    CLI::App* urls_ = nullptr;
    ChannelCommand command_;
};

} // namespace

std::unique_ptr<CommandNoun> addChannel(CLI::App& app) { return std::make_unique<ChannelNoun>(app); }

} // namespace vesk
