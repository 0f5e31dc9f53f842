#include "vesk/UpdateRecordCommand.hpp"

#include "VeskPlatform/FileManager.hpp"
#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"
#include "VeskShellCore/ApplicationSupport.hpp"
#include "VeskShellCore/WorkingDirectory.hpp"

#include <cerrno>

namespace vesk {

std::string updateRecordPath(const std::optional<std::string>& named, Platform& platform) {
    const auto path = named ? named : applicationSupportItem(platform.environment(), "updates/update-activation.json");
    if (!path) throw PosixError(ENOENT, "application support directory");
    return absolutePath(platform.fileManager(), *path);
}

namespace {

JsonValue answer(const UpdateRecordCommand& command, AppUpdateActivationRecordStoring& store) {
    if (command.verb == UpdateRecordVerb::remove)
        store.deleteRecord(command.expectedUpdateID);
    else if (const auto record = store.load())
        return toJson(*record);
    return {JsonValue::Object{}};
}

} // namespace

std::string runUpdateRecord(const UpdateRecordCommand& command, Platform& platform) {
    AppUpdateActivationRecordStore store(platform, updateRecordPath(command.file, platform));
    return writeJson(answer(command, store)) + "\n";
}

} // namespace vesk
