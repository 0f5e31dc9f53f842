#include "VeskPlatform/Linux/Maildir/MailIndex.hpp"

#include "VeskPlatform/Linux/Maildir/MaildirListing.hpp"
#include "VeskPlatform/Linux/Maildir/MessageFile.hpp"
#include "VeskPlatform/Linux/Maildir/MessageReader.hpp"
#include "VeskPlatform/Linux/Vdir/Parallel.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <cerrno>
#include <optional>
#include <set>
#include <variant>

namespace vesk::maildir {
namespace {

/// Few enough to notice the deadline in time, enough for all threads and for one write.
constexpr std::size_t batchSize = 1024;

/// The message, or the error number that kept it from being read.
using ReadMessage = std::variant<IndexedMessage, int>;

ReadMessage readMessage(const std::string& folder, const MessageName& name, const MessageReader& reader) {
    try {
        const MessageFile file(folder + "/" + name.file());
        const MessageHeaders headers = reader.headers(file.headerBytes());
        return IndexedMessage{std::string(name.unique),
                              std::string(name.info),
                              name.isNew,
                              name.isRead(),
                              name.isFlagged(),
                              headers.date.value_or(file.modified()),
                              onOneRow(headers.messageId),
                              onOneRow(headers.sender),
                              onOneRow(headers.subject)};
    } catch (const PosixError& error) {
        return static_cast<int>(error.code());
    }
}

/// Gone since it was listed, or no file at all: there is no such message.
bool meansNoMessage(int errnoValue) { return errnoValue == ENOENT || errnoValue == EINVAL || errnoValue == EISDIR; }

} // namespace

/// What a listing asks for.
struct MailIndex::Work {
    std::vector<MessageName> unknown;
    std::vector<std::pair<std::int64_t, MessageName>> renamed;
    std::vector<std::int64_t> gone;
    std::size_t unreadable = 0;
    int lastError = 0;
};

std::int64_t MailIndex::refresh(const std::string& folder) {
    IndexedFolder known = database_.folder(folder);
    try {
        if (known.state.empty() || known.state != folderState(folder).text()) update(folder, known);
    } catch (const PosixError& error) {
        if (error.code() != ENOENT) throw;
        database_.forgetFolder(known.id); // since the tree was looked at
    }
    return known.id;
}

void MailIndex::distrust(std::int64_t folder) {
    database_.change([&] { database_.touch(folder); });
}

void MailIndex::forgetOthers(const std::string& root, const std::vector<MailFolder>& folders) {
    std::set<std::string> paths;
    for (const MailFolder& folder : folders) paths.insert(folder.path);
    for (const auto& [path, id] : database_.folders())
        if ((path == root || path.starts_with(root + "/")) && !paths.contains(path)) database_.forgetFolder(id);
}

void MailIndex::update(const std::string& path, IndexedFolder& folder) {
    deadline_.check();
    const Instant before = tools_.now();
    const MaildirListing listing(path);
    deadline_.check();
    Work work;
    compare(listing, folder, work);
    if (!work.unknown.empty()) readMessages(path, folder, work);
    if (work.unreadable > 0)
        tools_.log("mail-store messages unreadable errno=" + std::to_string(work.lastError)
                   + " count=" + std::to_string(work.unreadable));
    else if (listing.state().isSettled(before))
        database_.change([&] { database_.keepState(folder.id, listing.state().text(), folder.changes); });
}

void MailIndex::compare(const MaildirListing& listing, IndexedFolder& folder, Work& work) {
    const std::vector<MessageName>& names = listing.messages();
    std::vector<bool> known(names.size());
    database_.forEachMessage(folder.id, [&](std::int64_t id, const MessageName& before) {
        const auto found = std::ranges::lower_bound(names, before.unique, {}, &MessageName::unique);
        if (found == names.end() || found->unique != before.unique) return work.gone.push_back(id);
        known[static_cast<std::size_t>(found - names.begin())] = true;
        if (found->info != before.info || found->isNew != before.isNew) work.renamed.emplace_back(id, *found);
    });
    for (std::size_t i = 0; i < names.size(); ++i)
        if (!known[i]) work.unknown.push_back(names[i]);
    if (work.gone.empty() && work.renamed.empty()) return;
    write(folder, [&] {
        for (const std::int64_t id : work.gone) database_.remove(id);
        for (const auto& [id, name] : work.renamed) database_.rename(id, name);
    });
}

void MailIndex::readMessages(const std::string& path, IndexedFolder& folder, Work& work) {
    const MessageReader& reader = tools_.reader();
    for (std::size_t begin = 0; begin < work.unknown.size(); begin += batchSize) {
        std::vector<ReadMessage> read(std::min(batchSize, work.unknown.size() - begin));
        vdir::inParallel(read.size(), 16,
                         [&](std::size_t i) { read[i] = readMessage(path, work.unknown[begin + i], reader); });
        write(folder, [&] {
            for (const ReadMessage& each : read)
                if (const auto* message = std::get_if<IndexedMessage>(&each)) database_.add(folder.id, *message);
        });
        for (const ReadMessage& each : read) {
            const int* error = std::get_if<int>(&each);
            if (error == nullptr || meansNoMessage(*error)) continue;
            ++work.unreadable;
            work.lastError = *error;
        }
        deadline_.check();
    }
}

void MailIndex::write(IndexedFolder& folder, const std::function<void()>& writes) {
    database_.change([&] {
        writes();
        database_.touch(folder.id);
    });
    ++folder.changes;
}

} // namespace vesk::maildir
