#pragma once

#include "VeskPlatform/UserDefaults.hpp"

#include <map>
#include <mutex>
#include <variant>

namespace vesk::test {

/// Values in memory: strings, and bytes in a type of their own.
class FakeUserDefaults : public UserDefaults {
public:
    struct Bytes {
        std::string bytes;
    };

    std::map<std::string, std::variant<std::string, Bytes>> values;
    /// Whether nothing can be written, as on a full disk.
    bool full = false;

    std::optional<std::string> string(const std::string& key) override {
        const std::scoped_lock lock(mutex_);
        const auto* found = stored<std::string>(key);
        return found == nullptr ? std::nullopt : std::optional(*found);
    }
    std::optional<std::string> data(const std::string& key) override {
        const std::scoped_lock lock(mutex_);
        const auto* found = stored<Bytes>(key);
        return found == nullptr ? std::nullopt : std::optional(found->bytes);
    }
    void setString(const std::string& key, std::string_view text) override {
        const std::scoped_lock lock(mutex_);
        if (!full) values[key] = std::string(text);
    }
    void setData(const std::string& key, std::string_view bytes) override {
        const std::scoped_lock lock(mutex_);
        if (!full) values[key] = Bytes{std::string(bytes)};
    }
    void remove(const std::string& key) override {
        const std::scoped_lock lock(mutex_);
        if (!full) values.erase(key);
    }

private:
    template <class T> const T* stored(const std::string& key) const {
        const auto found = values.find(key);
        return found == values.end() ? nullptr : std::get_if<T>(&found->second);
    }

    std::mutex mutex_; // called from threads
};

} // namespace vesk::test
