#pragma once

#include "vesk/Companion.hpp"

namespace vesk {

/// macOS keeps consent itself and shows it in System Settings; no program changes it there.
class AppleHost : public CompanionHost {
public:
    std::unique_ptr<Platform> makePlatform() override;
    std::string consent(const ConsentCommand& command) override;
    void consentPage(const ConsentPageCommand& command) override;
    DoctorAnswer doctor(const DoctorCommand& command) override;
};

} // namespace vesk
