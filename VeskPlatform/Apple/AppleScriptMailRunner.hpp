#pragma once

#include "VeskPlatform/MailScriptRunner.hpp"

namespace vesk {

/// Compiles and runs the text of a script within this process. Called on the main thread, as the script engine demands.
class AppleScriptMailRunner : public MailScriptRunner {
public:
    MailScriptOutcome run(const MailScript& script) override;
};

} // namespace vesk
