#include "VeskPlatform/Linux/ConsentDatabase.hpp"

#include "VeskPlatform/Linux/PrivateDatabaseFile.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"

#include <cerrno>
#include <sqlite3.h>
#include <sys/stat.h>
#include <utility>

namespace vesk {

namespace {

constexpr const char* schema = "CREATE TABLE IF NOT EXISTS consent ("
                               "capability TEXT PRIMARY KEY NOT NULL, "
                               "state INTEGER NOT NULL CHECK (state BETWEEN 0 AND 3), "
                               "decided_by TEXT NOT NULL, decided_at TEXT NOT NULL) WITHOUT ROWID";

ConsentDatabaseError damaged(const std::string& path, const std::string& reason) {
    return {SQLITE_CORRUPT, "The consent database " + path + " is damaged: " + reason + "."};
}

/// What SQLite's codes mean for people.
ConsentDatabaseError databaseError(const SqliteFailure& failure, const std::string& path) {
    const int code = failure.code & 0xff;
    const std::string name = "The consent database " + path;
    switch (code) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED: return {code, name + " is locked by another program."};
    case SQLITE_ERROR: // our own statements are right, so the tables are not
    case SQLITE_CORRUPT:
    case SQLITE_CONSTRAINT:
    case SQLITE_NOTADB: return damaged(path, failure.what());
    case SQLITE_READONLY: return {code, name + " cannot be written."};
    case SQLITE_FULL: return {code, name + " cannot be written: the disk is full."};
    default: return {code, name + " cannot be used: " + failure.what() + "."};
    }
}

ConsentDatabaseError fileError(int errnoValue, const std::string& path) {
    return {SQLITE_CANTOPEN,
            "The consent database cannot be used: " + PosixError(errnoValue, path).description() + "."};
}

template <class Body> auto translated(const std::string& path, Body body) {
    try {
        return body();
    } catch (const SqliteFailure& failure) {
        throw databaseError(failure, path);
    }
}

/// Begins at once, so that two writers never wait for each other's half.
template <class Body> auto inTransaction(SqliteConnection& connection, Body body) {
    connection.run("BEGIN IMMEDIATE");
    if constexpr (std::is_void_v<decltype(body())>) {
        body();
        connection.run("COMMIT"); // a failure before it rolls back when the connection closes
    } else {
        auto result = body();
        connection.run("COMMIT");
        return result;
    }
}

std::map<std::string, ConsentDecision> readDecisions(SqliteConnection& connection, const std::string& path) {
    std::map<std::string, ConsentDecision> result;
    // An empty file is a database without tables: a writer was stopped before its first commit.
    if (!SqliteQuery(connection, "SELECT 1 FROM sqlite_master WHERE name = 'consent'").next()) return result;
    SqliteQuery query(connection, "SELECT capability, state, decided_by, decided_at FROM consent");
    while (query.next()) {
        const auto state = query.number(1);
        if (!state || *state < 0 || *state > 3) throw damaged(path, "a state is out of range");
        result[query.text(0)] = {static_cast<ConsentState>(*state), query.text(2), query.text(3)};
    }
    return result;
}

void writeDecision(SqliteConnection& connection, const std::string& id, const ConsentDecision& decision) {
    SqliteQuery query(connection, "INSERT OR REPLACE INTO consent VALUES (?, ?, ?, ?)");
    query.bind(0, id);
    query.bind(1, static_cast<std::int64_t>(decision.state));
    query.bind(2, decision.decidedBy);
    query.bind(3, decision.decidedAt);
    query.next();
}

} // namespace

ConsentDatabaseError::ConsentDatabaseError(std::int64_t code, std::string description)
    : ErrorRecord("VeskConsent", code, std::move(description)) {}

ConsentDatabase::ConsentDatabase(std::string folder, std::chrono::milliseconds patience)
    : folder_(std::move(folder)), path_(folder_ + "/consent.sqlite"), patience_(patience) {}

std::map<std::string, ConsentDecision> ConsentDatabase::decisions(std::chrono::milliseconds patience) const {
    if (!exists()) return {};
    return translated(path_, [&] {
        SqliteConnection connection(path_, patience);
        return readDecisions(connection, path_);
    });
}

ConsentState ConsentDatabase::state(const std::string& id, std::chrono::milliseconds patience) const {
    const auto all = decisions(patience);
    const auto found = all.find(id);
    return found == all.end() ? ConsentState::notDetermined : found->second.state;
}

void ConsentDatabase::decide(const std::vector<std::string>& ids, const ConsentDecision& decision) {
    prepareFile();
    translated(path_, [&] {
        SqliteConnection connection(path_, patience_);
        inTransaction(connection, [&] {
            connection.run(schema);
            for (const std::string& id : ids) writeDecision(connection, id, decision);
        });
    });
}

ConsentState ConsentDatabase::decideFirst(const std::string& id, const ConsentDecision& decision) {
    prepareFile();
    return translated(path_, [&] {
        SqliteConnection connection(path_, patience_);
        return inTransaction(connection, [&] {
            connection.run(schema);
            const auto all = readDecisions(connection, path_);
            const auto found = all.find(id);
            if (found != all.end() && found->second.state != ConsentState::notDetermined) return found->second.state;
            writeDecision(connection, id, decision);
            return decision.state;
        });
    });
}

void ConsentDatabase::reset(const std::vector<std::string>& ids) {
    if (!exists()) return;
    prepareFile();
    translated(path_, [&] {
        SqliteConnection connection(path_, patience_);
        inTransaction(connection, [&] {
            connection.run(schema);
            for (const std::string& id : ids) {
                SqliteQuery query(connection, "DELETE FROM consent WHERE capability = ?");
                query.bind(0, id);
                query.next();
            }
        });
    });
}

bool ConsentDatabase::exists() const {
    // Without a folder there is no place for decisions, and so there are none.
    if (folder_.empty()) return false;
    struct stat status {};
    if (::stat(path_.c_str(), &status) != 0) {
        if (errno == ENOENT || errno == ENOTDIR) return false;
        throw fileError(errno, path_);
    }
    if (!S_ISREG(status.st_mode)) throw fileError(S_ISDIR(status.st_mode) ? EISDIR : EINVAL, path_);
    return true;
}

void ConsentDatabase::prepareFile() const {
    if (folder_.empty()) throw fileError(ENOENT, "the home directory");
    (void)exists(); // tells where something else stands in the file's place
    try {
        preparePrivateDatabaseFile(folder_, path_);
    } catch (const PosixError& error) {
        throw ConsentDatabaseError(SQLITE_CANTOPEN,
                                   "The consent database cannot be used: " + error.description() + ".");
    }
}

} // namespace vesk
