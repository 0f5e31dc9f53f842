#pragma once

#include "VeskPlatform/MailScriptRunner.hpp"

namespace vesk {

/// Stands where nothing plays the part of the mail program: no script can be made for it.
class UnscriptedMail : public MailScriptRunner {
public:
    MailScriptOutcome run(const MailScript&) override;
};

} // namespace vesk
