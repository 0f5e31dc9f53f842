#pragma once

#include "VeskPlatform/UserDefaults.hpp"

#include <chrono>
#include <string>

namespace vesk {

class SqliteConnection;

/// User defaults in the file `defaults.sqlite` (mode 0600) of one folder (made with mode 0700): strings as text, bytes
/// as blobs. Each call opens the file, reads or changes one row and closes it; it waits for another process as long as
/// `patience` and no longer. Reading and removing make no file.
class SqliteUserDefaults : public UserDefaults {
public:
    explicit SqliteUserDefaults(std::string folder, std::chrono::milliseconds patience = std::chrono::seconds(2));

    const std::string& path() const { return path_; }

    std::optional<std::string> string(const std::string& key) override;
    std::optional<std::string> data(const std::string& key) override;
    void setString(const std::string& key, std::string_view text) override;
    void setData(const std::string& key, std::string_view bytes) override;
    void remove(const std::string& key) override;

private:
    std::optional<std::string> stored(const std::string& key, const std::string& type) const;
    void store(const std::string& key, const std::string& type, std::string_view value) const;

    std::string folder_, path_;
    std::chrono::milliseconds patience_;
};

} // namespace vesk
