#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs a verb of `vesk channel` and returns its record as JSON. Addresses are those of the release origin that this
/// program was built with.
std::string runChannel(const ChannelCommand& command, Platform& platform);

/// Runs `vesk telegram-bootstrap` over the text on standard input and returns what it says as JSON; an empty object
/// where it allows nobody.
std::string runTelegramBootstrap(const TelegramBootstrapCommand& command, Platform& platform);

} // namespace vesk
