#include "vesk/Linux/DoctorServices.hpp"

#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskSupport/Text.hpp"
#include "vesk/Linux/DoctorDesktop.hpp"
#include "vesk/Linux/DoctorMessaging.hpp"

#include <algorithm>
#include <filesystem>

namespace vesk {

namespace {

bool isFolder(const std::string& path) {
    std::error_code error;
    return !path.empty() && std::filesystem::is_directory(path, error);
}

std::string folderService(const std::string& what, const std::string& path) {
    return what + (path.empty() ? std::string(" (no home folder)") : " under " + path);
}

/// Such as "2 unreadable files: /a, /b"; the first few are enough to start with.
std::string named(const std::vector<std::string>& paths, const std::string& one, const std::string& several) {
    constexpr std::size_t mostNames = 5;
    const std::size_t count = std::min(paths.size(), mostNames);
    std::string text = std::to_string(paths.size()) + " " + (paths.size() == 1 ? one : several) + ": "
                       + joined({paths.begin(), paths.begin() + static_cast<std::ptrdiff_t>(count)}, ", ");
    return paths.size() > count ? text + " and " + std::to_string(paths.size() - count) + " more" : text;
}

/// The store of a capability, with what is amiss in it.
DoctorService storeService(const std::string& what, CapabilityKind kind, const std::vector<StoreReport>& stores) {
    const auto found = std::ranges::find(stores, kind, &StoreReport::capability);
    if (found == stores.end()) return {what, {}};
    const StoreReport& store = *found;
    DoctorService result{folderService(what, store.path), {}};
    const auto report = [&](const std::vector<std::string>& paths, const std::string& one, const std::string& several,
                            const std::string& remedy) {
        if (!paths.empty()) result.findings.push_back({named(paths, one, several), remedy});
    };
    const std::string remedy = "chmod -R u+rX " + store.path;
    report(store.unreadableFolders, "unreadable folder", "unreadable folders", remedy);
    report(store.unreadableFiles, "unreadable file", "unreadable files", remedy);
    report(store.unparsableFiles, "file that cannot be parsed", "files that cannot be parsed", "Mend or remove them.");
    return result;
}

DoctorService mailService(Environment& environment) {
    const std::string root = mailFolder(environment);
    if (isFolder(root)) return {folderService("Maildir accounts", root), {}};
    return {"Maildir accounts",
            {{"There is no mail folder.", "Set VESK_MAIL_DIR, or fetch mail into ~/Maildir (apt install isync)."}}};
}

DoctorService cloudService(Environment& environment) {
    const std::string drive = environment.value("VESK_CLOUD_DRIVE").value_or("");
    if (isFolder(drive)) return {"The folder " + drive, {}};
    return {"The folder that VESK_CLOUD_DRIVE names",
            {{drive.empty() ? "No cloud folder is set." : "The cloud folder does not exist.",
              "Set VESK_CLOUD_DRIVE to your mounted or synchronised drive."}}};
}

} // namespace

DoctorService serviceOf(CapabilityKind kind, Environment& environment, const std::vector<StoreReport>& stores) {
    switch (kind) {
    case CapabilityKind::fullDiskAccess: return {"The permissions of the file system", {}};
    case CapabilityKind::screenRecording: return examineScreenRecording(environment);
    case CapabilityKind::systemAudio:
    case CapabilityKind::microphone: return {"Nothing uses it", {}};
    case CapabilityKind::accessibility: return examineAccessibility(environment);
    case CapabilityKind::calendar: return storeService("Calendar folders", kind, stores);
    case CapabilityKind::reminders: return storeService("To-do folders", kind, stores);
    case CapabilityKind::contacts: return storeService("vCard folders", kind, stores);
    case CapabilityKind::messages: return examineMessaging();
    case CapabilityKind::mail: return mailService(environment);
    case CapabilityKind::iCloud: return cloudService(environment);
    }
    return {};
}

} // namespace vesk
