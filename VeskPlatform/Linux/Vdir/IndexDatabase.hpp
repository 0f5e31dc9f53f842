#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace vesk {
class SqliteConnection;
}

namespace vesk::vdir {

/// Where indexes are kept between runs: an SQLite database in the cache folder. It only ever saves time: a missing,
/// damaged, locked or unwritable one reads as empty and forgets what it is told, without a word.
class IndexDatabase {
public:
    /// An empty path keeps nothing.
    explicit IndexDatabase(std::string path);
    ~IndexDatabase();

    /// What was last stored for a collection, by its absolute path.
    std::optional<std::string> load(const std::string& collectionPath);
    void store(const std::string& collectionPath, const std::string& bytes);

private:
    SqliteConnection& connection();
    void createFile() const;
    /// False where the file was of no use and has been removed.
    bool tryToStore(const std::string& collectionPath, const std::string& bytes);
    void write(const std::string& collectionPath, const std::string& bytes);

    std::string path_;
    std::unique_ptr<SqliteConnection> connection_;
};

} // namespace vesk::vdir
