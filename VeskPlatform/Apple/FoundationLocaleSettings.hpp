#pragma once

#include "VeskPlatform/LocaleSettings.hpp"

namespace vesk {

/// NSTimeZone and NSLocale as the user has set them now.
class FoundationLocaleSettings : public LocaleSettings {
public:
    std::string timeZone() override;
    std::string locale() override;
};

} // namespace vesk
