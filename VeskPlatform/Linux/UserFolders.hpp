#pragma once

#include <optional>
#include <string>

namespace vesk {

class Environment;

/// Where the user's things are: the folder that its own variable names, else one under the XDG base directories
/// (version 0.8: a relative path in an XDG variable is ignored). Empty where the variable is not set and the user has
/// no home. Nothing is created.
std::string calendarsFolder(Environment& environment);
std::string remindersFolder(Environment& environment);
std::string contactsFolder(Environment& environment);
std::string stateFolder(Environment& environment);
std::string cacheFolder(Environment& environment);
/// The containers of the cloud account; no variable of its own names it.
std::string containersFolder(Environment& environment);

/// The root of the mail accounts: the folder that VESK_MAIL_DIR names, else the first of `~/Maildir`, `~/Mail` and
/// `~/.mail` that exists; empty where there is none.
std::string mailFolder(Environment& environment);

/// The drive that VESK_CLOUD_DRIVE names, mounted or synchronised by another program: absolute, without a slash at its
/// end; none where the variable is not set or empty.
std::optional<std::string> cloudDriveFolder(Environment& environment);

} // namespace vesk
