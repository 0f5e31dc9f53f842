#pragma once

#include "VeskSupport/Records.hpp"

#include <cstdint>
#include <optional>
#include <string>

// The packaged runtime's answers about its messaging bot.

namespace vesk {

/// What the messaging service said of a bot's token.
struct TelegramBotTokenValidationResult {
    bool ok = false;
    std::optional<std::string> botUsername{};
    std::optional<std::int64_t> botID{};
    std::optional<bool> canReadAllGroupMessages{};
    std::optional<std::string> error{};

    bool operator==(const TelegramBotTokenValidationResult&) const = default;
};

template <>
inline constexpr auto recordTable<TelegramBotTokenValidationResult> =
    recordFields(required("ok", &TelegramBotTokenValidationResult::ok),
                 optional("botUsername", &TelegramBotTokenValidationResult::botUsername),
                 optional("botId", &TelegramBotTokenValidationResult::botID),
                 optional("canReadAllGroupMessages", &TelegramBotTokenValidationResult::canReadAllGroupMessages),
                 optional("error", &TelegramBotTokenValidationResult::error));

/// Whether a person has made the bot theirs.
struct PackagedTelegramBindingStatus {
    std::string runtimeMode;
    bool ownerBound = false;

    bool operator==(const PackagedTelegramBindingStatus&) const = default;
};

template <>
inline constexpr auto recordTable<PackagedTelegramBindingStatus> =
    recordFields(required("runtimeMode", &PackagedTelegramBindingStatus::runtimeMode),
                 required("ownerBound", &PackagedTelegramBindingStatus::ownerBound));

} // namespace vesk
