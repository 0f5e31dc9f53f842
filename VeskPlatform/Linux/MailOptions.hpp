#pragma once

#include "VeskPlatform/Linux/Maildir/MaildirScriptRunner.hpp"

namespace vesk {

class Clock;
class Environment;
class LocaleSettings;

/// The mail that the user's environment describes: VESK_MAIL_DIR, VESK_CACHE_DIR, the current locale and time zone, and
/// the modules beside the running program. The clock lives as long as the options.
MaildirOptions mailOptions(Environment& environment, LocaleSettings& localeSettings, Clock& clock,
                           std::function<void(const std::string&)> log);

} // namespace vesk
