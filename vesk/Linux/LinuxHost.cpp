#include "vesk/Linux/LinuxHost.hpp"

#include "VeskPlatform/Linux/DesktopDialog.hpp"
#include "VeskPlatform/Linux/LinuxPlatform.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskShellCore/ShellDebugLogger.hpp"
#include "vesk/Linux/ConsentCommands.hpp"
#include "vesk/Linux/ConsentPage.hpp"
#include "vesk/Linux/Doctor.hpp"

namespace vesk {

LinuxHost::LinuxHost() : database_(stateFolder(environment_)) {}

std::unique_ptr<Platform> LinuxHost::makePlatform() {
    auto platform = std::make_unique<LinuxPlatform>(LinuxWiring{});
    platform->setLog([ports = platform.get()](const std::string& message) {
        ShellDebugLogger::log(*ports, [&] { return message; });
    });
    return platform;
}

std::string LinuxHost::consent(const ConsentCommand& command) { return runConsent(command, database_, clock_); }

void LinuxHost::consentPage(const ConsentPageCommand& command) {
    runConsentPage(command, DesktopDialog(environment_), database_, clock_);
}

DoctorAnswer LinuxHost::doctor(const DoctorCommand& command) {
    const DoctorReport report = examine(environment_, database_);
    return {command.json ? writeJson(toJson(report)) + "\n" : doctorText(report), report.blindness};
}

} // namespace vesk
