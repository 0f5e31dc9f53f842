#pragma once

#include <optional>
#include <string>

namespace vesk {

/// What the RemoteDesktop portal gives for the user's permission to be found again. Each is good for one session, which
/// gives the next. It is kept in a private file; one that cannot be kept only means that the user is asked again.
class RestoreToken {
public:
    /// `stateFolder` need not be there yet.
    explicit RestoreToken(const std::string& stateFolder);

    std::optional<std::string> read() const;
    /// An empty one forgets.
    void write(const std::string& token) const noexcept;

private:
    std::string folder_, path_;
};

} // namespace vesk
