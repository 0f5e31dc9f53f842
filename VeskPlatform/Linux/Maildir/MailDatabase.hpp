#pragma once

#include "VeskPlatform/MailScriptRunner.hpp"
#include "VeskSupport/Instant.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {
class SqliteConnection;
class SqliteQuery;
} // namespace vesk

namespace vesk::maildir {

struct MessageName;

/// A message as the index has it. Texts are on one line.
struct IndexedMessage {
    std::string unique, info; ///< As in MessageName.
    bool isNew = false, isRead = false, isFlagged = false;
    Instant date{};
    std::string messageId, sender, subject;
};

/// A folder as the index has it. `state` is empty where it must be listed; `changes` counts what was written to it.
struct IndexedFolder {
    std::int64_t id = 0;
    std::string state;
    std::int64_t changes = 0;
};

/// A message that may answer a question.
struct MailCandidate {
    Instant date{};
    std::int64_t message = 0, folder = 0;
};

/// What is searched: texts in lower case.
enum class MailField { subject, sender };

/// The tables of the index of mail: SQLite in one file that may be deleted at any time. Functions throw SqliteFailure,
/// which `isOfNoUse` for a file of another format too. Processes may use one file at the same time.
class MailDatabase {
public:
    /// Opens the file, makes it and its folders where they are missing; an empty path keeps all in memory.
    explicit MailDatabase(const std::string& path);
    ~MailDatabase();

    /// Several writes as one; undone where `writes` throws.
    void change(const std::function<void()>& writes);

    /// The folder's row, made where there is none.
    IndexedFolder folder(const std::string& path);
    /// All folders by path.
    std::vector<std::pair<std::string, std::int64_t>> folders();
    /// Counts a change and forgets the state: until `keepState`, the folder must be listed.
    void touch(std::int64_t folder);
    /// Keeps the state where nobody has written to the folder since it had so many changes.
    void keepState(std::int64_t folder, const std::string& state, std::int64_t changes);
    void forgetFolder(std::int64_t folder);

    void forEachMessage(std::int64_t folder,
                        const std::function<void(std::int64_t id, const MessageName& name)>& visit);
    /// Nothing where the folder has the message already.
    void add(std::int64_t folder, const IndexedMessage& message);
    void rename(std::int64_t message, const MessageName& name);
    void remove(std::int64_t message);

    /// The newest messages of a folder that a view shows.
    std::vector<MailCandidate> newest(std::int64_t folder, MailView view, std::int64_t limit);
    /// The messages of a folder from a date on, in no order.
    std::vector<MailCandidate> received(std::int64_t folder, Instant from);
    /// The messages of all folders from a date on whose field contains `text`, which is in lower case; in no order.
    std::vector<MailCandidate> containing(MailField field, std::string_view text, Instant from);
    /// None where it has been removed meanwhile.
    std::optional<IndexedMessage> message(std::int64_t id);

    std::optional<std::string> preview(std::int64_t message);
    void keepPreview(std::int64_t message, const std::string& text);

private:
    SqliteQuery& query(const char* statement);
    void rewindAll();
    std::vector<MailCandidate> candidates(SqliteQuery& rows, std::int64_t folder);
    void prepareTables();

    std::unique_ptr<SqliteConnection> connection_;
    /// Statements that were used once are used often. Their texts are literals.
    std::vector<std::pair<const char*, std::unique_ptr<SqliteQuery>>> queries_;
};

} // namespace vesk::maildir
