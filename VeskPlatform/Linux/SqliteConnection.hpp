#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

struct sqlite3;
struct sqlite3_stmt;

namespace vesk {

/// A failure of SQLite: the extended result code and SQLite's own text. Its users say what it means for people.
struct SqliteFailure : std::runtime_error {
    SqliteFailure(int resultCode, const std::string& text) : std::runtime_error(text), code(resultCode) {}
    /// Whether the file is of no use to those who can make it anew: damaged, no database, or one with other tables.
    bool isOfNoUse() const;

    int code;
};

/// An open database; closed with the object. Functions throw SqliteFailure.
class SqliteConnection {
public:
    /// Opens an existing file, for writing where the file allows it. Another process is waited for up to `patience`.
    SqliteConnection(const std::string& path, std::chrono::milliseconds patience);
    ~SqliteConnection();
    SqliteConnection(const SqliteConnection&) = delete;
    SqliteConnection& operator=(const SqliteConnection&) = delete;

    /// Runs statements that return no rows.
    void run(const std::string& statements);

private:
    friend class SqliteQuery;
    [[noreturn]] void fail() const;

    sqlite3* handle_ = nullptr;
};

/// One prepared statement. Parameters and columns count from zero.
class SqliteQuery {
public:
    SqliteQuery(SqliteConnection& connection, const std::string& statement);
    ~SqliteQuery();
    SqliteQuery(const SqliteQuery&) = delete;
    SqliteQuery& operator=(const SqliteQuery&) = delete;

    void bind(int parameter, const std::string& text);
    void bind(int parameter, std::int64_t number);
    /// Binds bytes without copying them; they outlive the query's last `next`.
    void bindBytes(int parameter, std::string_view bytes);
    /// Goes to the next row; false where there is none.
    bool next();
    void rewind();
    /// Text or bytes, as they stand.
    std::string text(int column) const;
    /// The same without a copy; valid until the next step.
    std::string_view view(int column) const;
    /// None where the column holds something else than a whole number.
    std::optional<std::int64_t> number(int column) const;

private:
    SqliteConnection& connection_;
    sqlite3_stmt* statement_ = nullptr;
};

} // namespace vesk
