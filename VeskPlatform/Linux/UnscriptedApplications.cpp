#include "VeskPlatform/Linux/UnscriptedApplications.hpp"

namespace vesk {

MailScriptOutcome UnscriptedMail::run(const MailScript&) { return MailScriptNotMade{}; }

} // namespace vesk
