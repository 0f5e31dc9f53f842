#pragma once

#include "VeskPlatform/UserDefaults.hpp"

namespace vesk {

/// NSUserDefaults of the running application.
class FoundationUserDefaults : public UserDefaults {
public:
    std::optional<std::string> string(const std::string& key) override;
    std::optional<std::string> data(const std::string& key) override;
    void setString(const std::string& key, std::string_view text) override;
    void setData(const std::string& key, std::string_view bytes) override;
    void remove(const std::string& key) override;
};

} // namespace vesk
