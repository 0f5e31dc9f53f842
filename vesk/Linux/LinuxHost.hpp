#pragma once

#include "VeskPlatform/Linux/ConsentDatabase.hpp"
#include "VeskPlatform/Linux/ProcessEnvironment.hpp"
#include "VeskPlatform/Portable/SystemClock.hpp"
#include "vesk/Companion.hpp"

namespace vesk {

/// Linux has no place where a user decides about programs: consent is the companion's own.
class LinuxHost : public CompanionHost {
public:
    LinuxHost();

    std::unique_ptr<Platform> makePlatform() override;
    std::string consent(const ConsentCommand& command) override;
    void consentPage(const ConsentPageCommand& command) override;
    DoctorAnswer doctor(const DoctorCommand& command) override;

private:
    ProcessEnvironment environment_;
    SystemClock clock_;
    ConsentDatabase database_;
};

} // namespace vesk
