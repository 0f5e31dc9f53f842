#include "vesk/CommandLine.hpp"

#include "VeskSupport/Text.hpp"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <map>

namespace vesk {

namespace {

/// The command line's shape, and where its values land.
class Parser {
public:
    Parser() {
        app_.name("vesk");
        app_.set_help_flag("-h,--help", "Print this help and exit");
        app_.add_flag("--version", version_, "Print version and build");
        app_.add_flag("--json", json_, "With --version: print JSON, with the addresses of the services");
        CLI::App* consent = app_.add_subcommand("consent", "What the assistant may do");
        consent->require_subcommand(1);
        addVerb(*consent, ConsentVerb::list, "list", "List the capabilities and what was decided");
        addVerb(*consent, ConsentVerb::grant, "grant", "Allow capabilities, after a question on the terminal");
        addVerb(*consent, ConsentVerb::deny, "deny", "Refuse capabilities");
        addVerb(*consent, ConsentVerb::reset, "reset", "Forget what was decided");
        page_ = consent->add_subcommand("page", "Show the page of a settings address on the desktop");
        page_->add_option("url", pageCommand_.url, "The settings address")->required()->type_name("URL");
        doctor_ = app_.add_subcommand("doctor", "Tell what serves each capability and what is missing");
        doctor_->add_flag("--json", doctorCommand_.json, "Print JSON");
        compose_ = app_.add_subcommand("compose", "Compose pictures and clips into a vertical film");
        compose_->add_option("--request", composeCommand_.requestPath, "The request, a JSON file")
            ->required()
            ->type_name("FILE");
        compose_->add_flag("--quiet", composeCommand_.quiet, "Show no progress");
        addFiles(*app_.add_subcommand("files", "Files of the cloud drive, and access to local ones"));
        liveness_ = app_.add_subcommand("liveness", "Tell whether the assistant is alive");
        addUpdateRecord(*app_.add_subcommand("update-record", "What is kept of an update across the relaunch"));
    }

    Command parse(std::vector<std::string> arguments) {
        std::reverse(arguments.begin(), arguments.end()); // CLI11 takes them from the back
        try {
            app_.parse(std::move(arguments));
        } catch (const CLI::CallForHelp&) {
            return HelpCommand{usage()};
        } catch (const CLI::ParseError& error) {
            throw UsageError(usage(), error.what());
        }
        return parsed();
    }

private:
    void addVerb(CLI::App& noun, ConsentVerb verb, const std::string& name, const std::string& help) {
        CLI::App* command = noun.add_subcommand(name, help);
        verbs_.emplace_back(verb, command);
        command->add_flag("--json", consent_.json, "Print JSON");
        if (verb == ConsentVerb::list) return;
        command->add_option("name", consent_.names, "Identifiers of capabilities")->type_name("NAME");
        command->add_flag("--all", consent_.all, "All capabilities that have a consent");
        if (verb == ConsentVerb::grant) command->add_flag("--yes", consent_.yes, "Answer the question with yes");
    }

    void addFiles(CLI::App& noun) {
        noun.require_subcommand(1);
        addFilesVerb(noun, FilesVerb::root, "root", "Tell where the files are");
        addPath(addFilesVerb(noun, FilesVerb::list, "list", "List a folder, or the root"));
        addPath(addFilesVerb(noun, FilesVerb::stat, "stat", "Tell of one file or folder"));
        addPath(addFilesVerb(noun, FilesVerb::read, "read", "Print a file's text"))->required();
        CLI::App& write = addFilesVerb(noun, FilesVerb::write, "write", "Write a file from standard input");
        addPath(write)->required();
        write.add_flag("--overwrite", files_.overwrite, "Replace a file that is there");
        addPath(addFilesVerb(noun, FilesVerb::makeDirectory, "mkdir", "Make a folder and those above it"))->required();
        CLI::App& exporting = addFilesVerb(noun, FilesVerb::exportItem, "export", "Copy an item to a local path");
        addPath(exporting)->required();
        exporting.add_option("output", files_.output, "The local path; what is there is removed first")
            ->required()
            ->type_name("OUTPUT");
        CLI::App* prepare = noun.add_subcommand("prepare", "Ask the system for access to a local path");
        filesVerbs_.emplace_back(FilesVerb::prepare, prepare);
        addPath(*prepare)->required();
    }

    CLI::App& addFilesVerb(CLI::App& noun, FilesVerb verb, const std::string& name, const std::string& help) {
        CLI::App* command = noun.add_subcommand(name, help);
        filesVerbs_.emplace_back(verb, command);
        std::map<std::string, CapabilityICloudScope> scopes;
        for (const auto& [scope, word] : rawValueTable<CapabilityICloudScope>) scopes.emplace(word, scope);
        command->add_option("--scope", files_.scope, "drive (the default) or app_documents")
            ->transform(CLI::Transformer(scopes).description(""))
            ->type_name("SCOPE");
        return *command;
    }

    CLI::Option* addPath(CLI::App& command) {
        return command.add_option("path", files_.path, "The path")->type_name("PATH");
    }

    std::optional<FilesCommand> parsedFiles() {
        for (const auto& [verb, command] : filesVerbs_) {
            if (!command->parsed()) continue;
            files_.verb = verb;
            if (verb == FilesVerb::exportItem && isBlank(files_.output))
                throw UsageError(usage(), "OUTPUT names nothing.");
            return files_;
        }
        return std::nullopt;
    }

    void addUpdateRecord(CLI::App& noun) {
        noun.require_subcommand(1);
        addRecordFile(*(showRecord_ = noun.add_subcommand("show", "Print the record")));
        addRecordFile(*(deleteRecord_ = noun.add_subcommand("delete", "Remove the record")));
        deleteRecord_->add_option("--expect", expectedUpdate_, "Only where the record is this update's")
            ->type_name("UUID");
    }

    void addRecordFile(CLI::App& command) {
        command.add_option("--file", updateRecord_.file, "The record's file, in place of the application's own")
            ->type_name("PATH");
    }

    std::optional<UpdateRecordCommand> parsedUpdateRecord() {
        if (!showRecord_->parsed() && !deleteRecord_->parsed()) return std::nullopt;
        updateRecord_.verb = deleteRecord_->parsed() ? UpdateRecordVerb::remove : UpdateRecordVerb::show;
        if (updateRecord_.file && isBlank(*updateRecord_.file)) throw UsageError(usage(), "PATH names nothing.");
        if (expectedUpdate_) updateRecord_.expectedUpdateID = Uuid::parse(*expectedUpdate_);
        if (expectedUpdate_ && !updateRecord_.expectedUpdateID)
            throw UsageError(usage(), "--expect needs a UUID, not \"" + *expectedUpdate_ + "\".");
        return updateRecord_;
    }

    Command parsed() {
        for (const auto& [verb, command] : verbs_) {
            if (!command->parsed()) continue;
            consent_.verb = verb;
            consent_.usage = usage();
            if (verb != ConsentVerb::list && consent_.all == !consent_.names.empty())
                throw UsageError(usage(), "Name capabilities, or use --all.");
            return consent_;
        }
        pageCommand_.usage = usage();
        if (page_->parsed()) return pageCommand_;
        if (doctor_->parsed()) return doctorCommand_;
        if (compose_->parsed()) return composeCommand_;
        if (auto files = parsedFiles()) return *std::move(files);
        if (liveness_->parsed()) return LivenessCommand{};
        if (auto record = parsedUpdateRecord()) return *std::move(record);
        if (!version_)
            throw UsageError(usage(), json_ ? "--json needs --version or a command." : "A command is needed.");
        return VersionCommand{json_};
    }

    /// The help of the innermost command that was named.
    std::string usage() const {
        const CLI::App* innermost = &app_;
        for (auto named = innermost->get_subcommands(); !named.empty(); named = innermost->get_subcommands())
            innermost = named.front();
        std::string path;
        for (const CLI::App* app = innermost->get_parent(); app != nullptr; app = app->get_parent())
            path = app->get_name() + (path.empty() ? "" : " " + path);
        return innermost->help(path);
    }

    CLI::App app_{"The companion of the Vesk assistant on Linux"};
    CLI::App* page_ = nullptr;
    CLI::App* doctor_ = nullptr;
    CLI::App* compose_ = nullptr;
    std::vector<std::pair<ConsentVerb, CLI::App*>> verbs_;
    ConsentCommand consent_;
    ConsentPageCommand pageCommand_;
    DoctorCommand doctorCommand_;
    ComposeCommand composeCommand_;
    std::vector<std::pair<FilesVerb, CLI::App*>> filesVerbs_;
    FilesCommand files_;
    CLI::App* liveness_ = nullptr;
    CLI::App* showRecord_ = nullptr;
    CLI::App* deleteRecord_ = nullptr;
    UpdateRecordCommand updateRecord_;
    std::optional<std::string> expectedUpdate_;
    bool version_ = false, json_ = false;
};

} // namespace

Command parseCommandLine(std::vector<std::string> arguments) { return Parser().parse(std::move(arguments)); }

} // namespace vesk
