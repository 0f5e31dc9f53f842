#pragma once

#include "VeskPlatform/Linux/Maildir/MailDatabase.hpp"
#include "VeskPlatform/Linux/Maildir/MaildirTree.hpp"

#include <chrono>
#include <exception>
#include <functional>
#include <string>

namespace vesk::maildir {

class MaildirListing;
class MessageReader;
struct MessageName;

/// The time for an answer is over.
struct OutOfTime : std::exception {};

/// When an answer must be there at the latest.
struct Deadline {
    std::function<std::chrono::steady_clock::time_point()> now;
    std::chrono::steady_clock::time_point end;

    /// Throws OutOfTime.
    void check() const {
        if (now() >= end) throw OutOfTime();
    }
};

/// What an index is made with.
struct MailIndexTools {
    /// Makes the reader ready on the first call. Throws ErrorRecord where it cannot.
    std::function<const MessageReader&()> reader;
    std::function<Instant()> now;
    std::function<void(const std::string& message)> log;
};

/// Brings what a database knows of mail folders up to date. Reads only messages that are new to it.
class MailIndex {
public:
    MailIndex(MailDatabase& database, const MailIndexTools& tools, const Deadline& deadline)
        : database_(database), tools_(tools), deadline_(deadline) {}

    /// The folder's number in the database, which from now on knows the folder as it is. What was read before the
    /// deadline is kept where that ends it (OutOfTime). A folder that has gone is empty. Throws PosixError where it
    /// cannot be read.
    std::int64_t refresh(const std::string& folder);
    /// Lets the next `refresh` list the folder even where it seems unchanged.
    void distrust(std::int64_t folder);
    /// Forgets the folders below `root` that are not among these.
    void forgetOthers(const std::string& root, const std::vector<MailFolder>& folders);

private:
    struct Work;
    void update(const std::string& path, IndexedFolder& folder);
    void compare(const MaildirListing& listing, IndexedFolder& folder, Work& work);
    void readMessages(const std::string& path, IndexedFolder& folder, Work& work);
    void write(IndexedFolder& folder, const std::function<void()>& writes);

    MailDatabase& database_;
    const MailIndexTools& tools_;
    const Deadline& deadline_;
};

} // namespace vesk::maildir
