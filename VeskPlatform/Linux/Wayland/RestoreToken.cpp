#include "VeskPlatform/Linux/Wayland/RestoreToken.hpp"

#include "VeskPlatform/Linux/PosixPrivateFiles.hpp"

#include <filesystem>
#include <fstream>
#include <system_error>

namespace vesk {

RestoreToken::RestoreToken(const std::string& stateFolder)
    : folder_(stateFolder), path_(stateFolder + "/remote-desktop-token") {}

std::optional<std::string> RestoreToken::read() const {
    std::ifstream file(path_);
    std::string token;
    if (!std::getline(file, token) || token.empty()) return std::nullopt;
    return token;
}

void RestoreToken::write(const std::string& token) const noexcept {
    try {
        if (token.empty()) {
            std::filesystem::remove(path_);
            return;
        }
        PosixPrivateFiles files;
        files.createDirectories(folder_, 0777);
        files.writeAtomically(path_, token);
    } catch (const std::exception&) { // the next session asks the user
    }
}

} // namespace vesk
