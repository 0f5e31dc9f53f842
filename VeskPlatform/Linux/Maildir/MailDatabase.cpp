#include "VeskPlatform/Linux/Maildir/MailDatabase.hpp"

#include "VeskPlatform/Linux/Maildir/MaildirListing.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"
#include "VeskSupport/Text.hpp"

#include <fcntl.h>
#include <filesystem>
#include <sqlite3.h>
#include <system_error>

namespace vesk::maildir {
namespace {

/// Another process holds the database for the moment of writing some hundred messages.
constexpr std::chrono::milliseconds patience{2000};

constexpr std::int64_t format = 1;
/// What is searched stands apart from the rest, so that looking through all messages reads little else. Of the indexes
/// those by date answer the views: each has its newest at one end.
constexpr const char* tables = R"(
CREATE TABLE folder (id INTEGER PRIMARY KEY, path TEXT NOT NULL UNIQUE, state TEXT NOT NULL, changes INTEGER NOT NULL);
CREATE TABLE message (id INTEGER PRIMARY KEY, folder INTEGER NOT NULL, name TEXT NOT NULL, info TEXT NOT NULL,
    new INTEGER NOT NULL, read INTEGER NOT NULL, flagged INTEGER NOT NULL, date INTEGER NOT NULL,
    messageId TEXT NOT NULL, sender TEXT NOT NULL, subject TEXT NOT NULL, UNIQUE (folder, name));
CREATE INDEX newest ON message (folder, date);
CREATE INDEX unread ON message (folder, date) WHERE read = 0;
CREATE INDEX flagged ON message (folder, date) WHERE flagged = 1;
CREATE TABLE search (id INTEGER PRIMARY KEY, folder INTEGER NOT NULL, date INTEGER NOT NULL, subject TEXT NOT NULL,
    sender TEXT NOT NULL);
CREATE TABLE preview (id INTEGER PRIMARY KEY, text TEXT NOT NULL);
PRAGMA user_version = 1;
)";

void createFile(const std::string& path) {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path).parent_path(), ignored);
    const FileDescriptor file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

bool exists(const std::string& path) {
    std::error_code error;
    return std::filesystem::exists(path, error);
}

std::int64_t numberOf(Instant instant) { return instant.time_since_epoch().count(); }
Instant instantOf(std::int64_t number) { return Instant(std::chrono::milliseconds(number)); }

std::int64_t formatOf(SqliteConnection& connection) {
    SqliteQuery version(connection, "PRAGMA user_version");
    return version.next() ? version.number(0).value_or(0) : 0;
}

} // namespace

MailDatabase::MailDatabase(const std::string& path) {
    if (!path.empty() && !exists(path)) createFile(path);
    connection_ = std::make_unique<SqliteConnection>(path.empty() ? ":memory:" : path, patience);
    if (formatOf(*connection_) != format) prepareTables();
    // A cache need not survive a power cut whole, but it must be found to be damaged then: what is written stands in a
    // log with checksums until it is known to be on the disk.
    connection_->run("PRAGMA synchronous = NORMAL");
}

MailDatabase::~MailDatabase() = default;

void MailDatabase::prepareTables() {
    connection_->run("PRAGMA journal_mode = WAL");
    change([&] {
        const std::int64_t found = formatOf(*connection_);
        if (found == format) return; // another process was faster
        if (found != 0) throw SqliteFailure(SQLITE_NOTADB, "an index of another format");
        connection_->run(tables);
    });
}

void MailDatabase::change(const std::function<void()>& writes) {
    rewindAll();
    connection_->run("BEGIN IMMEDIATE");
    try {
        writes();
        rewindAll();
        connection_->run("COMMIT");
    } catch (...) {
        rewindAll();
        try {
            connection_->run("ROLLBACK");
        } catch (const SqliteFailure&) {
            // Some failures have undone the changes already.
        }
        throw;
    }
}

void MailDatabase::rewindAll() {
    // A statement under way holds on to what the database was, which nobody may write to.
    for (const auto& [statement, made] : queries_) made->rewind();
}

SqliteQuery& MailDatabase::query(const char* statement) {
    for (const auto& [text, made] : queries_) {
        if (text != statement) continue;
        made->rewind();
        return *made;
    }
    queries_.emplace_back(statement, std::make_unique<SqliteQuery>(*connection_, statement));
    return *queries_.back().second;
}

IndexedFolder MailDatabase::folder(const std::string& path) {
    SqliteQuery& known = query("SELECT id, state, changes FROM folder WHERE path = ?1");
    known.bind(0, path);
    if (known.next()) return {known.number(0).value_or(0), known.text(1), known.number(2).value_or(0)};
    change([&] {
        SqliteQuery& added = query("INSERT OR IGNORE INTO folder (path, state, changes) VALUES (?1, '', 0)");
        added.bind(0, path);
        added.next();
    });
    return folder(path);
}

std::vector<std::pair<std::string, std::int64_t>> MailDatabase::folders() {
    SqliteQuery& rows = query("SELECT path, id FROM folder");
    std::vector<std::pair<std::string, std::int64_t>> result;
    while (rows.next()) result.emplace_back(rows.text(0), rows.number(1).value_or(0));
    return result;
}

void MailDatabase::touch(std::int64_t folder) {
    SqliteQuery& update = query("UPDATE folder SET state = '', changes = changes + 1 WHERE id = ?1");
    update.bind(0, folder);
    update.next();
}

void MailDatabase::keepState(std::int64_t folder, const std::string& state, std::int64_t changes) {
    SqliteQuery& update = query("UPDATE folder SET state = ?2 WHERE id = ?1 AND changes = ?3");
    update.bind(0, folder);
    update.bind(1, state);
    update.bind(2, changes);
    update.next();
}

void MailDatabase::forgetFolder(std::int64_t folder) {
    change([&] {
        for (const char* statement : {"DELETE FROM preview WHERE id IN (SELECT id FROM message WHERE folder = ?1)",
                                      "DELETE FROM search WHERE id IN (SELECT id FROM message WHERE folder = ?1)",
                                      "DELETE FROM message WHERE folder = ?1", "DELETE FROM folder WHERE id = ?1"}) {
            SqliteQuery& removal = query(statement);
            removal.bind(0, folder);
            removal.next();
        }
    });
}

void MailDatabase::forEachMessage(std::int64_t folder,
                                  const std::function<void(std::int64_t id, const MessageName& name)>& visit) {
    SqliteQuery& rows = query("SELECT id, name, info, new FROM message WHERE folder = ?1");
    rows.bind(0, folder);
    while (rows.next()) visit(rows.number(0).value_or(0), {rows.view(1), rows.view(2), rows.number(3) == 1});
}

void MailDatabase::add(std::int64_t folder, const IndexedMessage& message) {
    SqliteQuery& row = query("INSERT OR IGNORE INTO message (folder, name, info, new, read, flagged, date, messageId, "
                             "sender, subject) VALUES (?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10) RETURNING id");
    row.bind(0, folder);
    row.bind(1, message.unique);
    row.bind(2, message.info);
    row.bind(3, message.isNew ? 1 : 0);
    row.bind(4, message.isRead ? 1 : 0);
    row.bind(5, message.isFlagged ? 1 : 0);
    row.bind(6, numberOf(message.date));
    row.bind(7, message.messageId);
    row.bind(8, message.sender);
    row.bind(9, message.subject);
    if (!row.next()) return;
    SqliteQuery& words = query("INSERT OR REPLACE INTO search VALUES (?1, ?2, ?3, ?4, ?5)");
    words.bind(0, row.number(0).value_or(0));
    words.bind(1, folder);
    words.bind(2, numberOf(message.date));
    words.bind(3, lowercased(message.subject));
    words.bind(4, lowercased(message.sender));
    words.next();
}

void MailDatabase::rename(std::int64_t message, const MessageName& name) {
    SqliteQuery& update = query("UPDATE message SET info = ?2, new = ?3, read = ?4, flagged = ?5 WHERE id = ?1");
    update.bind(0, message);
    update.bind(1, std::string(name.info));
    update.bind(2, name.isNew ? 1 : 0);
    update.bind(3, name.isRead() ? 1 : 0);
    update.bind(4, name.isFlagged() ? 1 : 0);
    update.next();
}

void MailDatabase::remove(std::int64_t message) {
    for (const char* statement : {"DELETE FROM message WHERE id = ?1", "DELETE FROM search WHERE id = ?1",
                                  "DELETE FROM preview WHERE id = ?1"}) {
        SqliteQuery& removal = query(statement);
        removal.bind(0, message);
        removal.next();
    }
}

std::vector<MailCandidate> MailDatabase::candidates(SqliteQuery& rows, std::int64_t folder) {
    std::vector<MailCandidate> result;
    while (rows.next()) result.push_back({instantOf(rows.number(1).value_or(0)), rows.number(0).value_or(0), folder});
    return result;
}

std::vector<MailCandidate> MailDatabase::newest(std::int64_t folder, MailView view, std::int64_t limit) {
    const auto statement = [&] {
        switch (view) {
        case MailView::unread:
            return "SELECT id, date FROM message WHERE folder = ?1 AND read = 0 ORDER BY date DESC, id DESC LIMIT ?2";
        case MailView::flagged:
            return "SELECT id, date FROM message WHERE folder = ?1 AND flagged = 1 ORDER BY date DESC, id DESC LIMIT "
                   "?2";
        case MailView::recent: break;
        }
        return "SELECT id, date FROM message WHERE folder = ?1 ORDER BY date DESC, id DESC LIMIT ?2";
    };
    SqliteQuery& rows = query(statement());
    rows.bind(0, folder);
    rows.bind(1, limit);
    return candidates(rows, folder);
}

std::vector<MailCandidate> MailDatabase::received(std::int64_t folder, Instant from) {
    SqliteQuery& rows = query("SELECT id, date FROM message WHERE folder = ?1 AND date >= ?2");
    rows.bind(0, folder);
    rows.bind(1, numberOf(from));
    return candidates(rows, folder);
}

std::vector<MailCandidate> MailDatabase::containing(MailField field, std::string_view text, Instant from) {
    SqliteQuery& rows = query(field == MailField::subject ? "SELECT id, folder, date, subject FROM search"
                                                          : "SELECT id, folder, date, sender FROM search");
    std::vector<MailCandidate> result;
    while (rows.next()) {
        const Instant date = instantOf(rows.number(2).value_or(0));
        if (date < from || rows.view(3).find(text) == std::string_view::npos) continue;
        result.push_back({date, rows.number(0).value_or(0), rows.number(1).value_or(0)});
    }
    return result;
}

std::optional<IndexedMessage> MailDatabase::message(std::int64_t id) {
    SqliteQuery& row = query("SELECT name, info, new, read, flagged, date, messageId, sender, subject FROM message "
                             "WHERE id = ?1");
    row.bind(0, id);
    if (!row.next()) return std::nullopt;
    return IndexedMessage{row.text(0),        row.text(1),        row.number(2) == 1,
                          row.number(3) == 1, row.number(4) == 1, instantOf(row.number(5).value_or(0)),
                          row.text(6),        row.text(7),        row.text(8)};
}

std::optional<std::string> MailDatabase::preview(std::int64_t message) {
    SqliteQuery& row = query("SELECT text FROM preview WHERE id = ?1");
    row.bind(0, message);
    if (!row.next()) return std::nullopt;
    return row.text(0);
}

void MailDatabase::keepPreview(std::int64_t message, const std::string& text) {
    SqliteQuery& row = query("INSERT OR REPLACE INTO preview VALUES (?1, ?2)");
    row.bind(0, message);
    row.bind(1, text);
    row.next();
}

} // namespace vesk::maildir
