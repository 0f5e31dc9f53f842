#include "vesk/Apple/AppleHost.hpp"

#import "VeskPlatform/Apple/ApplePlatform.hpp"
#include "vesk/CompanionError.hpp"

namespace vesk {
namespace {

/// What the system does itself, so that there is nothing for the companion to do.
CompanionError systemsOwn(const std::string& description) { return {CompanionError::Kind::systemsOwn, description}; }

} // namespace

std::unique_ptr<Platform> AppleHost::makePlatform() { return std::make_unique<ApplePlatform>(); }

std::string AppleHost::consent(const ConsentCommand&) {
    throw systemsOwn("macOS keeps consent itself: see System Settings, Privacy & Security, or run "
                     "VeskCapabilityBroker open-settings NAME.");
}

void AppleHost::consentPage(const ConsentPageCommand&) {
    throw systemsOwn("macOS shows its own pages: run VeskCapabilityBroker open-settings NAME.");
}

DoctorAnswer AppleHost::doctor(const DoctorCommand&) {
    throw systemsOwn("The doctor knows Linux services only. On macOS, VeskCapabilityBroker status tells of each "
                     "capability.");
}

} // namespace vesk
