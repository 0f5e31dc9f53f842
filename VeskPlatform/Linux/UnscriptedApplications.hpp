#pragma once

#include "VeskPlatform/MessagesScriptRunner.hpp"

namespace vesk {

/// Stands where nothing plays the part of the messaging program: the script runner is not there to be started.
class UnscriptedMessages : public MessagesScriptRunner {
public:
    ScriptRunResult run(const MessagesScript& script) override;
};

} // namespace vesk
