#pragma once

#include "VeskSupport/Records.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

/// Which Telegram user and chats the text of a setup step allows: from its machine-readable line ("Packaged setup
/// JSON:" and an object on the same line) where that says anything, else from its lines for people.
struct TelegramBootstrapExtraction {
    /// Without "@".
    std::optional<std::string> allowedUsername;
    std::optional<std::string> allowedUserID;
    /// Without duplicates.
    std::vector<std::string> allowedChatIDs;

    bool isEmpty() const { return !allowedUsername && !allowedUserID && allowedChatIDs.empty(); }
    bool operator==(const TelegramBootstrapExtraction&) const = default;

    /// None where the text allows nobody.
    static std::optional<TelegramBootstrapExtraction> parse(std::string_view text);
};

template <>
inline constexpr auto recordTable<TelegramBootstrapExtraction> =
    recordFields(optional("allowedUsername", &TelegramBootstrapExtraction::allowedUsername),
                 optional("allowedUserID", &TelegramBootstrapExtraction::allowedUserID),
                 defaulted("allowedChatIDs", &TelegramBootstrapExtraction::allowedChatIDs));

} // namespace vesk
