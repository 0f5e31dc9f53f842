#include "vesk/CommandNouns.hpp"

#include <utility>

// The nouns without verbs.

namespace vesk {
namespace {

template <class Value> class PlainNoun : public CommandNoun {
public:
    explicit PlainNoun(CLI::App& noun) : noun_(noun) {}

    CLI::App& noun() { return noun_; }
    Value& command() { return command_; }
    std::optional<Command> parsed(const std::string&) override {
        return noun_.parsed() ? std::optional<Command>(command_) : std::nullopt;
    }

private:
    CLI::App& noun_;
    Value command_;
};

} // namespace

std::unique_ptr<CommandNoun> addDoctor(CLI::App& app) {
    auto doctor = std::make_unique<PlainNoun<DoctorCommand>>(
        *app.add_subcommand("doctor", "Tell what serves each capability and what is missing"));
    doctor->noun().add_flag("--json", doctor->command().json, "Print JSON");
    return doctor;
}

std::unique_ptr<CommandNoun> addCompose(CLI::App& app) {
    auto compose = std::make_unique<PlainNoun<ComposeCommand>>(
        *app.add_subcommand("compose", "Compose pictures and clips into a vertical film"));
    compose->noun()
        .add_option("--request", compose->command().requestPath, "The request, a JSON file")
        ->required()
        ->type_name("FILE");
    compose->noun().add_flag("--quiet", compose->command().quiet, "Show no progress");
    return compose;
}

std::unique_ptr<CommandNoun> addLiveness(CLI::App& app) {
    return std::make_unique<PlainNoun<LivenessCommand>>(
        *app.add_subcommand("liveness", "Tell whether the assistant is alive"));
}

std::unique_ptr<CommandNoun> addTelegramBootstrap(CLI::App& app) {
    return std::make_unique<PlainNoun<TelegramBootstrapCommand>>(*app.add_subcommand(
        "telegram-bootstrap", "Tell which Telegram user and chats the text on standard input allows"));
}

} // namespace vesk
