#include "VeskPlatform/Linux/SqliteConnection.hpp"

#include <sqlite3.h>

namespace vesk {

bool SqliteFailure::isOfNoUse() const {
    const int kind = code & 0xFF;
    return kind == SQLITE_CORRUPT || kind == SQLITE_NOTADB || kind == SQLITE_ERROR || kind == SQLITE_CONSTRAINT
           || kind == SQLITE_MISMATCH;
}

SqliteConnection::SqliteConnection(const std::string& path, std::chrono::milliseconds patience) {
    // A connection for writing also rolls back what a killed writer left behind, which reading alone could not.
    const int flags = SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE;
    if (sqlite3_open_v2(path.c_str(), &handle_, flags, nullptr) != SQLITE_OK) {
        const SqliteFailure failure{sqlite3_extended_errcode(handle_), sqlite3_errmsg(handle_)};
        sqlite3_close(handle_);
        throw failure;
    }
    sqlite3_busy_timeout(handle_, static_cast<int>(patience.count()));
}

SqliteConnection::~SqliteConnection() { sqlite3_close(handle_); }

void SqliteConnection::run(const std::string& statements) {
    if (sqlite3_exec(handle_, statements.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) fail();
}

void SqliteConnection::fail() const { throw SqliteFailure{sqlite3_extended_errcode(handle_), sqlite3_errmsg(handle_)}; }

SqliteQuery::SqliteQuery(SqliteConnection& connection, const std::string& statement) : connection_(connection) {
    const int length = static_cast<int>(statement.size());
    if (sqlite3_prepare_v2(connection_.handle_, statement.data(), length, &statement_, nullptr) != SQLITE_OK)
        connection_.fail();
}

SqliteQuery::~SqliteQuery() { sqlite3_finalize(statement_); }

void SqliteQuery::bind(int parameter, const std::string& text) {
    const int length = static_cast<int>(text.size());
    if (sqlite3_bind_text(statement_, parameter + 1, text.data(), length, SQLITE_TRANSIENT) != SQLITE_OK)
        connection_.fail();
}

void SqliteQuery::bind(int parameter, std::int64_t number) {
    if (sqlite3_bind_int64(statement_, parameter + 1, number) != SQLITE_OK) connection_.fail();
}

void SqliteQuery::bindBytes(int parameter, std::string_view bytes) {
    if (sqlite3_bind_blob64(statement_, parameter + 1, bytes.data(), bytes.size(), SQLITE_STATIC) != SQLITE_OK)
        connection_.fail();
}

bool SqliteQuery::next() {
    const int result = sqlite3_step(statement_);
    if (result != SQLITE_ROW && result != SQLITE_DONE) connection_.fail();
    return result == SQLITE_ROW;
}

void SqliteQuery::rewind() { sqlite3_reset(statement_); }

std::string_view SqliteQuery::view(int column) const {
    const auto* bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
    const int length = sqlite3_column_bytes(statement_, column);
    return bytes == nullptr ? std::string_view() : std::string_view(bytes, static_cast<std::size_t>(length));
}

std::string SqliteQuery::text(int column) const { return std::string(view(column)); }

std::optional<std::int64_t> SqliteQuery::number(int column) const {
    if (sqlite3_column_type(statement_, column) != SQLITE_INTEGER) return std::nullopt;
    return sqlite3_column_int64(statement_, column);
}

} // namespace vesk
