#pragma once

#include "VeskPlatform/MessagesScriptRunner.hpp"

namespace vesk {

/// Runs the script's own command line and keeps what it prints.
class OsascriptMessagesRunner : public MessagesScriptRunner {
public:
    ScriptRunResult run(const MessagesScript& script) override;
};

} // namespace vesk
