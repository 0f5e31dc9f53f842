#pragma once

#include "VeskShellCore/ICloudModels.hpp"
#include "VeskSupport/Uuid.hpp"

#include <optional>
#include <stdexcept>
#include <string>
#include <variant>
#include <vector>

namespace vesk {

/// A command line that means nothing: the usage that fits it, and what was wrong.
class UsageError : public std::runtime_error {
public:
    UsageError(std::string usage, const std::string& wrong) : std::runtime_error(wrong), usage_(std::move(usage)) {}
    const std::string& usage() const { return usage_; }

private:
    std::string usage_;
};

struct HelpCommand {
    std::string text;
};
struct VersionCommand {
    bool json = false;
};
enum class ConsentVerb { list, grant, deny, reset };
struct ConsentCommand {
    ConsentVerb verb{};
    std::vector<std::string> names;
    bool all = false, yes = false, json = false;
    /// The usage of the verb, for what only shows when the names are looked up.
    std::string usage;
};
struct ConsentPageCommand {
    std::string url;
    std::string usage;
};
struct DoctorCommand {
    bool json = false;
};
struct ComposeCommand {
    std::string requestPath;
    bool quiet = false;
};
enum class FilesVerb { root, list, stat, read, write, makeDirectory, exportItem, prepare };
struct FilesCommand {
    FilesVerb verb{};
    CapabilityICloudScope scope = CapabilityICloudScope::drive;
    /// None where `list` and `stat` mean the root.
    std::optional<std::string> path;
    std::string output;
    bool overwrite = false;
};
struct LivenessCommand {};
enum class UpdateRecordVerb { show, remove };
struct UpdateRecordCommand {
    UpdateRecordVerb verb{};
    /// None for the one of the application support directory.
    std::optional<std::string> file;
    std::optional<Uuid> expectedUpdateID;
};

using Command = std::variant<HelpCommand, VersionCommand, ConsentCommand, ConsentPageCommand, DoctorCommand,
                             ComposeCommand, FilesCommand, LivenessCommand, UpdateRecordCommand>;

/// The command of `arguments` (without the program's name). Throws UsageError.
Command parseCommandLine(std::vector<std::string> arguments);

} // namespace vesk
