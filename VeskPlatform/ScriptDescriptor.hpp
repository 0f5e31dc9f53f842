#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace vesk {

/// What a script returns: a list whose items may be no text, or one value that may be no text.
struct ScriptDescriptor {
    using List = std::vector<std::optional<std::string>>;

    std::variant<std::optional<std::string>, List> value;

    bool operator==(const ScriptDescriptor&) const = default;
};

} // namespace vesk
