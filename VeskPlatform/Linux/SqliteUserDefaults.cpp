#include "VeskPlatform/Linux/SqliteUserDefaults.hpp"

#include "VeskPlatform/Linux/PrivateDatabaseFile.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <utility>

namespace vesk {
namespace {

constexpr const char* schema =
    "CREATE TABLE IF NOT EXISTS defaults (key TEXT PRIMARY KEY NOT NULL, value NOT NULL) WITHOUT ROWID";

} // namespace

SqliteUserDefaults::SqliteUserDefaults(std::string folder, std::chrono::milliseconds patience)
    : folder_(std::move(folder)), path_(folder_ + "/defaults.sqlite"), patience_(patience) {}

std::optional<std::string> SqliteUserDefaults::string(const std::string& key) { return stored(key, "text"); }
std::optional<std::string> SqliteUserDefaults::data(const std::string& key) { return stored(key, "blob"); }
void SqliteUserDefaults::setString(const std::string& key, std::string_view text) { store(key, "TEXT", text); }
void SqliteUserDefaults::setData(const std::string& key, std::string_view bytes) { store(key, "BLOB", bytes); }

void SqliteUserDefaults::remove(const std::string& key) {
    if (folder_.empty()) return;
    try {
        SqliteConnection connection(path_, patience_);
        SqliteQuery query(connection, "DELETE FROM defaults WHERE key = ?");
        query.bind(0, key);
        query.next();
    } catch (const SqliteFailure&) { // it stays as it was
    }
}

std::optional<std::string> SqliteUserDefaults::stored(const std::string& key, const std::string& type) const {
    if (folder_.empty()) return std::nullopt;
    try {
        SqliteConnection connection(path_, patience_);
        SqliteQuery query(connection, "SELECT value FROM defaults WHERE key = ? AND typeof(value) = ?");
        query.bind(0, key);
        query.bind(1, type);
        return query.next() ? std::optional(query.text(0)) : std::nullopt;
    } catch (const SqliteFailure&) {
        return std::nullopt;
    }
}

void SqliteUserDefaults::store(const std::string& key, const std::string& type, std::string_view value) const {
    if (folder_.empty()) return;
    try {
        preparePrivateDatabaseFile(folder_, path_);
        SqliteConnection connection(path_, patience_);
        connection.run(schema);
        SqliteQuery query(connection, "INSERT OR REPLACE INTO defaults VALUES (?, CAST(? AS " + type + "))");
        query.bind(0, key);
        query.bindBytes(1, value.data() == nullptr ? std::string_view("") : value);
        query.next();
    } catch (const SqliteFailure&) { // it stays as it was
    } catch (const PosixError&) {
    }
}

} // namespace vesk
