#pragma once

#include "VeskPlatform/Linux/Vdir/Folder.hpp"
#include "VeskSupport/Instant.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::maildir {

/// What tells one state of a Maildir folder from another. Its files never change in place: each arrival, removal and
/// change of flags renames one, which moves the times of `cur` or `new`.
struct FolderState {
    vdir::FileSignature newFiles, curFiles;

    bool operator==(const FolderState&) const = default;
    /// The state in one line of text.
    std::string text() const;
    /// Whether a change after `now` would make another state: nothing was changed just before, as coarsely as the file
    /// system counts time.
    bool isSettled(Instant now) const;
};

/// Throws PosixError where `cur` or `new` cannot be looked at.
FolderState folderState(const std::string& folder);

/// One message by its file's name (https://cr.yp.to/proto/maildir.html).
struct MessageName {
    std::string_view unique; ///< What stands before ":2,": the same for as long as the message lives.
    std::string_view info;   ///< The rest of the name, from ":2," on; mostly flags.
    bool isNew = false;      ///< Whether it lies in `new`, else in `cur`.

    bool isRead() const { return hasFlag('S'); }
    bool isFlagged() const { return hasFlag('F'); }
    /// The file's path below the folder.
    std::string file() const;

private:
    bool hasFlag(char flag) const;
};

/// The messages of a folder at one moment. Names live as long as the listing.
class MaildirListing {
public:
    /// Lists `new` and `cur`; what is being delivered (`tmp`) is not there yet. Lists again where the folder changed
    /// meanwhile, a few times. Throws PosixError.
    explicit MaildirListing(const std::string& folder);

    const FolderState& state() const { return state_; }
    /// Each message once, in ascending byte order of `unique`.
    const std::vector<MessageName>& messages() const { return messages_; }

private:
    void list(const std::string& folder);

    FolderState state_;
    std::string newNames_, curNames_; ///< Each name ends in a zero byte.
    std::vector<MessageName> messages_;
};

} // namespace vesk::maildir
