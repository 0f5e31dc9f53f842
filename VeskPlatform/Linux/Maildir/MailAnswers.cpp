#include "VeskPlatform/Linux/Maildir/MailAnswers.hpp"

#include "VeskPlatform/Linux/Maildir/MaildirListing.hpp"
#include "VeskPlatform/Linux/Maildir/MessageFile.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <cerrno>
#include <set>
#include <tuple>

namespace vesk::maildir {
namespace {

constexpr char fieldSeparator = '\x1f';
constexpr std::size_t previewCharacters = 600;

/// The first moment that is later than `cutoff` in whole seconds.
Instant firstAfter(const std::optional<Instant>& cutoff) {
    if (!cutoff) return Instant::min();
    return std::chrono::floor<std::chrono::seconds>(*cutoff) + std::chrono::seconds(1);
}

const char* word(bool value) { return value ? "true" : "false"; }

} // namespace

MailAnswers::MailAnswers(MailDatabase& database, const MailWorld& world, const MailIndexTools& tools,
                         const Deadline& deadline)
    : database_(database), world_(world), tools_(tools), deadline_(deadline), index_(database, tools, deadline),
      dates_(world.locale, world.timeZone) {}

template <class Answer> ScriptDescriptor::List MailAnswers::settled(Answer answer) {
    constexpr int mostTries = 3;
    for (int tries = 1;; ++tries) {
        mayChange_ = tries < mostTries;
        try {
            auto rows = answer();
            keepPreviews();
            return rows;
        } catch (const FolderChanged& change) {
            index_.distrust(change.folder);
        }
    }
}

ScriptDescriptor::List MailAnswers::rows(const MailListQuestion& question) {
    return settled([&] {
        refresh(true);
        ScriptDescriptor::List rows;
        for (const MailCandidate& candidate : candidates(question)) {
            if (static_cast<std::int64_t>(rows.size()) >= question.limit) break;
            if (const auto message = database_.message(candidate.message)) rows.emplace_back(row(candidate, *message));
        }
        return rows;
    });
}

ScriptDescriptor::List MailAnswers::rows(const MailFollowupQuestion& question) {
    return settled([&] {
        refresh(question.subjectFilter.empty() && question.senderFilter.empty());
        ScriptDescriptor::List rows;
        std::set<std::string> seen;
        for (const MailCandidate& candidate : candidates(question)) {
            if (static_cast<std::int64_t>(rows.size()) >= question.limit) break;
            const auto message = database_.message(candidate.message);
            if (!message) continue;
            const std::string& key = message->messageId.empty() ? message->unique : message->messageId;
            if (seen.insert(key).second) rows.emplace_back(row(candidate, *message));
        }
        return rows;
    });
}

void MailAnswers::refresh(bool onlyInboxes) {
    folders_.clear();
    for (std::size_t rank = 0; rank < world_.folders.size(); ++rank) {
        const MailFolder& folder = world_.folders[rank];
        if (onlyInboxes && !folder.isInbox) continue;
        try {
            folders_[index_.refresh(folder.path)] = {&folder, rank};
        } catch (const PosixError& error) {
            tools_.log("mail-store folder unreadable errno=" + std::to_string(error.code()));
        }
    }
    if (!onlyInboxes) index_.forgetOthers(world_.root, world_.folders);
}

std::vector<MailCandidate> MailAnswers::candidates(const MailListQuestion& question) {
    std::vector<MailCandidate> all;
    for (const auto& [id, known] : folders_) {
        const auto some = database_.newest(id, question.view, question.limit);
        all.insert(all.end(), some.begin(), some.end());
    }
    sortNewestFirst(all);
    return all;
}

std::vector<MailCandidate> MailAnswers::candidates(const MailFollowupQuestion& question) {
    const Instant from = firstAfter(question.cutoff);
    std::vector<MailCandidate> all;
    if (!question.subjectFilter.empty()) {
        all = database_.containing(MailField::subject, lowercased(question.subjectFilter), from);
    } else if (!question.senderFilter.empty()) {
        all = database_.containing(MailField::sender, lowercased(question.senderFilter), from);
    } else {
        for (const auto& [id, known] : folders_) {
            const auto some = database_.received(id, from);
            all.insert(all.end(), some.begin(), some.end());
        }
    }
    std::erase_if(all, [&](const MailCandidate& candidate) { return !folders_.contains(candidate.folder); });
    sortNewestFirst(all);
    return all;
}

void MailAnswers::sortNewestFirst(std::vector<MailCandidate>& candidates) const {
    const auto place = [&](const MailCandidate& candidate) {
        return std::tuple(-candidate.date.time_since_epoch().count(), folders_.at(candidate.folder).rank,
                          -candidate.message);
    };
    std::ranges::sort(candidates, {}, place);
}

std::string MailAnswers::row(const MailCandidate& candidate, const IndexedMessage& message) {
    const MailFolder& folder = *folders_.at(candidate.folder).folder;
    std::string text;
    for (const std::string& field :
         {onOneRow(message.unique), message.messageId, onOneRow(folder.name), onOneRow(folder.account), message.sender,
          message.subject, dates_.text(message.date, DisplayTime::full), std::string(word(message.isRead)),
          std::string(word(message.isFlagged))})
        text.append(field).push_back(fieldSeparator);
    return text += preview(candidate, message);
}

std::string MailAnswers::preview(const MailCandidate& candidate, const IndexedMessage& message) {
    if (auto known = database_.preview(candidate.message)) return *known;
    deadline_.check();
    const MessageName name{message.unique, message.info, message.isNew};
    try {
        const MessageFile file(folders_.at(candidate.folder).folder->path + "/" + name.file());
        previews_.emplace_back(candidate.message, file.preview(tools_.reader(), previewCharacters));
        return previews_.back().second;
    } catch (const PosixError& error) {
        if (error.code() == ENOENT && mayChange_) throw FolderChanged{candidate.folder};
        return {}; // a field that cannot be read
    }
}

void MailAnswers::keepPreviews() {
    if (previews_.empty()) return;
    try {
        database_.change([&] {
            for (const auto& [message, text] : previews_) database_.keepPreview(message, text);
        });
    } catch (const SqliteFailure&) {
        // They are read again the next time.
    }
}

} // namespace vesk::maildir
