#include "VeskSupport/Text.hpp"
#include "vesk/CommandNouns.hpp"

#include <map>
#include <utility>
#include <vector>

namespace vesk {
namespace {

class FilesNoun : public CommandNoun {
public:
    explicit FilesNoun(CLI::App& app) {
        CLI::App& noun = *app.add_subcommand("files", "Files of the cloud drive, and access to local ones");
        noun.require_subcommand(1);
        addVerb(noun, FilesVerb::root, "root", "Tell where the files are");
        addPath(addVerb(noun, FilesVerb::list, "list", "List a folder, or the root"));
        addPath(addVerb(noun, FilesVerb::stat, "stat", "Tell of one file or folder"));
        addPath(addVerb(noun, FilesVerb::read, "read", "Print a file's text"))->required();
        CLI::App& write = addVerb(noun, FilesVerb::write, "write", "Write a file from standard input");
        addPath(write)->required();
        write.add_flag("--overwrite", command_.overwrite, "Replace a file that is there");
        addPath(addVerb(noun, FilesVerb::makeDirectory, "mkdir", "Make a folder and those above it"))->required();
        CLI::App& exporting = addVerb(noun, FilesVerb::exportItem, "export", "Copy an item to a local path");
        addPath(exporting)->required();
        exporting.add_option("output", command_.output, "The local path; what is there is removed first")
            ->required()
            ->type_name("OUTPUT");
        CLI::App* prepare = noun.add_subcommand("prepare", "Ask the system for access to a local path");
        verbs_.emplace_back(FilesVerb::prepare, prepare);
        addPath(*prepare)->required();
    }

    std::optional<Command> parsed(const std::string& usage) override {
        for (const auto& [verb, command] : verbs_) {
            if (!command->parsed()) continue;
            command_.verb = verb;
            if (verb == FilesVerb::exportItem && isBlank(command_.output))
                throw UsageError(usage, "OUTPUT names nothing.");
            return command_;
        }
        return std::nullopt;
    }

private:
    CLI::App& addVerb(CLI::App& noun, FilesVerb verb, const std::string& name, const std::string& help) {
        CLI::App* command = noun.add_subcommand(name, help);
        verbs_.emplace_back(verb, command);
        std::map<std::string, CapabilityICloudScope> scopes;
        for (const auto& [scope, word] : rawValueTable<CapabilityICloudScope>) scopes.emplace(word, scope);
        command->add_option("--scope", command_.scope, "drive (the default) or app_documents")
            ->transform(CLI::Transformer(scopes).description(""))
            ->type_name("SCOPE");
        return *command;
    }

    CLI::Option* addPath(CLI::App& command) {
        return command.add_option("path", command_.path, "The path")->type_name("PATH");
    }

    std::vector<std::pair<FilesVerb, CLI::App*>> verbs_;
    FilesCommand command_;
};

} // namespace

std::unique_ptr<CommandNoun> addFiles(CLI::App& app) { return std::make_unique<FilesNoun>(app); }

} // namespace vesk
