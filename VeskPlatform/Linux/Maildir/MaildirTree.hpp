#pragma once

#include <functional>
#include <string>
#include <vector>

namespace vesk::maildir {

/// A Maildir folder: one with `cur` and `new` in it.
struct MailFolder {
    std::string path;
    std::string account; ///< The account's folder name.
    /// "INBOX", or the name below the account with `/` between its parts; `.Sub.Folder` is `Sub/Folder`.
    std::string name;
    bool isInbox = false;

    bool operator==(const MailFolder&) const = default;
};

/// The mail folders below `root`: accounts in the order of their names, each with its inbox first. The root itself is
/// an account where it is a Maildir folder or holds one named INBOX or `.Name`; any other folder in it that has an
/// INBOX of its own, and without such a root every folder that is or holds a Maildir folder, is an account too. An
/// account's inbox is its folder INBOX in any case, else its own `cur` and `new`. Links are followed, a folder is
/// listed once, whatever leads to it. Texts are well-formed UTF-8 but for paths. A folder that cannot be read is passed
/// over and told to `unreadable`; an unreadable root throws PosixError. `visiting` is called before each folder is
/// looked at, of mail or not; what it throws ends the search.
std::vector<MailFolder> findMailFolders(const std::string& root,
                                        const std::function<void(const std::string& path, int errnoValue)>& unreadable,
                                        const std::function<void()>& visiting);

} // namespace vesk::maildir
