#pragma once

#include "VeskPlatform/Linux/Vcard/VcardContactStore.hpp"

namespace vesk {

class Environment;
class LocaleSettings;

/// The address books that the user's environment describes: VESK_CONTACTS_DIR and the country of the locale.
VcardContactStoreOptions contactStoreOptions(Environment& environment, LocaleSettings& localeSettings,
                                             std::function<void(const std::string&)> log);

} // namespace vesk
