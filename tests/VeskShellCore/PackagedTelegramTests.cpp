#include "VeskShellCore/PackagedTelegram.hpp"
#include "tests/VeskShellCore/RecordTableWalk.hpp"

namespace vesk::test {

template <> RecordSample<TelegramBotTokenValidationResult> sampleOf() {
    return {.name = "TelegramBotTokenValidationResult",
            .record = {.ok = true,
                       .botUsername = "vesk_bot",
                       .botID = 9876543210,
                       .canReadAllGroupMessages = false,
                       .error = "unauthorized"},
            .required = "ok",
            .optional = "botUsername botId canReadAllGroupMessages error",
            .booleans = {{"ok", &TelegramBotTokenValidationResult::ok},
                         {"canReadAllGroupMessages", &TelegramBotTokenValidationResult::canReadAllGroupMessages}}};
}

template <> RecordSample<PackagedTelegramBindingStatus> sampleOf() {
    return {.name = "PackagedTelegramBindingStatus",
            .record = {.runtimeMode = "packaged", .ownerBound = true},
            .required = "runtimeMode ownerBound"};
}

using AllRecords = testing::Types<TelegramBotTokenValidationResult, PackagedTelegramBindingStatus>;
INSTANTIATE_TYPED_TEST_SUITE_P(PackagedTelegram, RecordTable, AllRecords, RecordNames);

} // namespace vesk::test
