#pragma once

#include "VeskPlatform/Linux/Maildir/MailIndex.hpp"
#include "VeskPlatform/MailScriptRunner.hpp"
#include "VeskSupport/DisplayDate.hpp"

#include <map>
#include <string>
#include <vector>

namespace vesk::maildir {

/// The mail that is asked about, and whom the answers are for.
struct MailWorld {
    std::vector<MailFolder> folders;
    std::string root, locale, timeZone;
};

/// Finds the rows that answer a question in an index of headers, which it brings up to date first. Throws what the
/// index throws.
class MailAnswers {
public:
    MailAnswers(MailDatabase& database, const MailWorld& world, const MailIndexTools& tools, const Deadline& deadline);

    ScriptDescriptor::List rows(const MailListQuestion& question);
    ScriptDescriptor::List rows(const MailFollowupQuestion& question);

private:
    /// A message's file is not where the index has it: the folder has changed since it was looked at.
    struct FolderChanged {
        std::int64_t folder;
    };
    struct KnownFolder {
        const MailFolder* folder;
        std::size_t rank;
    };

    template <class Answer> ScriptDescriptor::List settled(Answer answer);
    void refresh(bool onlyInboxes);
    std::vector<MailCandidate> candidates(const MailListQuestion& question);
    std::vector<MailCandidate> candidates(const MailFollowupQuestion& question);
    void sortNewestFirst(std::vector<MailCandidate>& candidates) const;
    std::string row(const MailCandidate& candidate, const IndexedMessage& message);
    std::string preview(const MailCandidate& candidate, const IndexedMessage& message);
    void keepPreviews();

    MailDatabase& database_;
    const MailWorld& world_;
    const MailIndexTools& tools_;
    const Deadline& deadline_;
    MailIndex index_;
    DateDisplay dates_;
    std::map<std::int64_t, KnownFolder> folders_;                ///< Those that answers come from, by their numbers.
    std::vector<std::pair<std::int64_t, std::string>> previews_; ///< Read for this answer.
    bool mayChange_ = true; ///< Whether a folder that has changed since is worth another look.
};

} // namespace vesk::maildir
