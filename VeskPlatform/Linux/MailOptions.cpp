#include "VeskPlatform/Linux/MailOptions.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/MainBundle.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskPlatform/LocaleSettings.hpp"

namespace vesk {

MaildirOptions mailOptions(Environment& environment, LocaleSettings& localeSettings, Clock& clock,
                           std::function<void(const std::string&)> log) {
    MaildirOptions options;
    options.root = mailFolder(environment);
    options.cacheFolder = cacheFolder(environment);
    options.moduleFolder = moduleFolderOf(runningExecutable());
    options.locale = localeSettings.locale();
    options.timeZone = localeSettings.timeZone();
    options.log = std::move(log);
    options.now = [&clock] { return clock.now(); };
    return options;
}

} // namespace vesk
