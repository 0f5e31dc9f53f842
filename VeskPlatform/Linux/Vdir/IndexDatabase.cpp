#include "VeskPlatform/Linux/Vdir/IndexDatabase.hpp"

#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <fcntl.h>
#include <filesystem>
#include <system_error>
#include <unistd.h>

namespace vesk::vdir {

namespace {

/// Another process holds the database only for the moment of a write.
constexpr std::chrono::milliseconds patience{50};

} // namespace

IndexDatabase::IndexDatabase(std::string path) : path_(std::move(path)) {}
IndexDatabase::~IndexDatabase() = default;

SqliteConnection& IndexDatabase::connection() {
    if (connection_ == nullptr) connection_ = std::make_unique<SqliteConnection>(path_, patience);
    return *connection_;
}

void IndexDatabase::createFile() const {
    std::error_code ignored;
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path(), ignored);
    const FileDescriptor file(::open(path_.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
}

std::optional<std::string> IndexDatabase::load(const std::string& collectionPath) {
    if (path_.empty()) return std::nullopt;
    try {
        SqliteQuery query(connection(), "SELECT content FROM collection WHERE path = ?1");
        query.bind(0, collectionPath);
        if (!query.next()) return std::nullopt;
        return query.text(0);
    } catch (const SqliteFailure&) {
        return std::nullopt;
    }
}

void IndexDatabase::write(const std::string& collectionPath, const std::string& bytes) {
    // A cache need not survive a power cut, so nothing is flushed; a torn write is found by the content's checksum.
    connection().run("PRAGMA synchronous = OFF; PRAGMA journal_mode = MEMORY;"
                     "CREATE TABLE IF NOT EXISTS collection (path TEXT PRIMARY KEY, content BLOB NOT NULL)");
    SqliteQuery query(connection(), "INSERT OR REPLACE INTO collection VALUES (?1, ?2)");
    query.bind(0, collectionPath);
    query.bindBytes(1, bytes);
    query.next();
}

void IndexDatabase::store(const std::string& collectionPath, const std::string& bytes) {
    if (path_.empty()) return;
    if (!tryToStore(collectionPath, bytes)) tryToStore(collectionPath, bytes);
}

bool IndexDatabase::tryToStore(const std::string& collectionPath, const std::string& bytes) {
    try {
        if (connection_ == nullptr) createFile();
        write(collectionPath, bytes);
        return true;
    } catch (const SqliteFailure& failure) {
        connection_.reset();
        if (!failure.isOfNoUse()) return true;
        ::unlink(path_.c_str());
        ::unlink((path_ + "-journal").c_str());
        return false;
    }
}

} // namespace vesk::vdir
