#include "VeskPlatform/Linux/Maildir/MaildirListing.hpp"

#include "VeskPlatform/Linux/DirectoryStream.hpp"
#include "VeskPlatform/Linux/OpenFailure.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <cerrno>
#include <sys/stat.h>

namespace vesk::maildir {
namespace {

vdir::FileSignature signatureOf(const std::string& folder) {
    struct stat status {};
    if (::stat(folder.c_str(), &status) != 0) throw PosixError(errno, folder);
    return vdir::signatureFrom(status);
}

std::string textOf(const vdir::FileSignature& signature) {
    return std::to_string(signature.inode) + " " + std::to_string(signature.modified) + " "
           + std::to_string(signature.changed);
}

/// The names of all that may be messages: hidden files are none, and what is no file shows when it is read.
std::string namesIn(const std::string& folder) {
    const DirectoryStream directory = openDirectory(folder);
    if (directory == nullptr) throwOpenFailure(errno, folder);
    std::string names;
    while (const dirent* entry = ::readdir(directory.get())) {
        if (entry->d_name[0] == '.' || entry->d_type == DT_DIR) continue;
        names.append(entry->d_name).push_back('\0');
    }
    return names;
}

void appendNames(std::vector<MessageName>& messages, std::string_view names, bool isNew) {
    while (!names.empty()) {
        const std::string_view name = names.substr(0, names.find('\0'));
        const std::size_t info = std::min(name.rfind(":2,"), name.size());
        messages.push_back({name.substr(0, info), name.substr(info), isNew});
        names.remove_prefix(name.size() + 1);
    }
}

} // namespace

std::string FolderState::text() const { return textOf(newFiles) + " " + textOf(curFiles); }

bool FolderState::isSettled(Instant now) const {
    const std::int64_t time = std::chrono::nanoseconds(now.time_since_epoch()).count();
    return vdir::isSettled(newFiles, time) && vdir::isSettled(curFiles, time);
}

FolderState folderState(const std::string& folder) {
    return {signatureOf(folder + "/new"), signatureOf(folder + "/cur")};
}

bool MessageName::hasFlag(char flag) const {
    return info.starts_with(":2,") && info.find(flag, 3) != std::string_view::npos;
}

std::string MessageName::file() const { return std::string(isNew ? "new/" : "cur/").append(unique).append(info); }

MaildirListing::MaildirListing(const std::string& folder) {
    // A file that is renamed during a listing may be in it twice, or not at all.
    constexpr int mostTries = 3;
    for (int tries = 0; tries < mostTries; ++tries) {
        state_ = folderState(folder);
        list(folder);
        if (folderState(folder) == state_) return;
    }
}

void MaildirListing::list(const std::string& folder) {
    // A message moves from `new` to `cur`, never back: in this order none is missed.
    newNames_ = namesIn(folder + "/new");
    curNames_ = namesIn(folder + "/cur");
    messages_.clear();
    appendNames(messages_, curNames_, false);
    appendNames(messages_, newNames_, true);
    std::ranges::stable_sort(messages_, {}, &MessageName::unique);
    const auto repeated = std::ranges::unique(messages_, {}, &MessageName::unique);
    messages_.erase(repeated.begin(), repeated.end());
}

} // namespace vesk::maildir
