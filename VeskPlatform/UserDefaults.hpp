#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// Small values of the user that outlive the process, no secrets. Each call is whole by itself and safe from any thread
/// and beside other processes. Nothing fails: what cannot be read is not there, what cannot be written stays as it was.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;
    /// None where nothing is stored, or something that is no string.
    virtual std::optional<std::string> string(const std::string& key) = 0;
    /// The same for bytes.
    virtual std::optional<std::string> data(const std::string& key) = 0;
    virtual void setString(const std::string& key, std::string_view text) = 0;
    virtual void setData(const std::string& key, std::string_view bytes) = 0;
    virtual void remove(const std::string& key) = 0;
};

} // namespace vesk
