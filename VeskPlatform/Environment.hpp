#pragma once

#include <optional>
#include <string>

namespace vesk {

/// What the process was started with, and the user's home. Read afresh at each call; safe from any thread.
class Environment {
public:
    virtual ~Environment() = default;
    /// A variable's value, also an empty one; none where it is not set.
    virtual std::optional<std::string> value(const std::string& name) = 0;
    /// The absolute path of the home directory, empty where the user has none.
    virtual std::string homeDirectory() = 0;
    /// The name that the process was started under, none where it was given no arguments at all.
    virtual std::optional<std::string> argumentZero() = 0;
};

} // namespace vesk
