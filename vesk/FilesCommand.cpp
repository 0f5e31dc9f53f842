#include "vesk/FilesCommand.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskShellCore/FileAccessSupport.hpp"
#include "VeskShellCore/ICloudOperations.hpp"
#include "vesk/StandardInput.hpp"

namespace vesk {
namespace {

using namespace VeskICloudOperations;

constexpr std::uint64_t mostTextBytes = std::uint64_t{1} << 30;

JsonValue answer(const FilesCommand& command, Platform& platform) {
    const Bundle& bundle = platform.mainBundle();
    const std::string path = command.path.value_or("");
    switch (command.verb) {
    case FilesVerb::root: return toJson(rootResponse(platform, command.scope, bundle));
    case FilesVerb::list: return toJson(list(platform, command.path, command.scope, bundle));
    case FilesVerb::stat: return toJson(stat(platform, command.path, command.scope, bundle));
    case FilesVerb::read: return toJson(readText(platform, path, command.scope, bundle));
    case FilesVerb::write:
        return toJson(
            writeText(platform, path, readStandardInput(mostTextBytes), command.overwrite, command.scope, bundle));
    case FilesVerb::makeDirectory: return toJson(makeDirectory(platform, path, command.scope, bundle));
    case FilesVerb::exportItem: return toJson(exportItem(platform, path, command.output, command.scope, bundle));
    case FilesVerb::prepare:
        return toJson(VeskFileAccessSupport::prepare(platform, path, bundle, platform.environment().homeDirectory()));
    }
    return {};
}

} // namespace

std::string runFiles(const FilesCommand& command, Platform& platform) {
    return writeJson(answer(command, platform)) + "\n";
}

} // namespace vesk
