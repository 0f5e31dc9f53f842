#include "VeskShellCore/VeskAuthInvalidationProbe.hpp"

#include "VeskPlatform/FileManager.hpp"
#include "VeskShellCore/ApplicationSupport.hpp"
#include "VeskSupport/DetachedWork.hpp"

#include <functional>

namespace vesk {
namespace {

/// On a thread of its own, since a home may lie on a server that does not answer.
Task<bool> exists(FileManager& files, std::string path) {
    std::function<bool()> look = [&files, path = std::move(path)] { return files.fileExists(path); };
    try {
        co_return co_await onThreadOfItsOwn(std::move(look));
    } catch (const ErrorRecord&) { // no thread, and so nothing that could be reached
        co_return false;
    }
}

} // namespace

std::string VeskAuthInvalidationProbe::defaultMarkerFilePath(Platform& platform) {
    return assistantDataItem(platform.environment(), "vesk-auth-invalidated.json");
}

Task<bool> VeskAuthInvalidationProbe::isInvalidated() const { return exists(platform_.fileManager(), markerFilePath_); }

} // namespace vesk
