#pragma once

#include <optional>
#include <string>

namespace vesk {

/// The process's environment variables and the user's home. Read afresh at each call; safe from any thread.
class Environment {
public:
    virtual ~Environment() = default;
    /// A variable's value, also an empty one; none where it is not set.
    virtual std::optional<std::string> value(const std::string& name) = 0;
    /// The absolute path of the home directory, empty where the user has none.
    virtual std::string homeDirectory() = 0;
};

} // namespace vesk
