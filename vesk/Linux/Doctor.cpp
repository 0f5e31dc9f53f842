#include "vesk/Linux/Doctor.hpp"

#include "VeskPlatform/Linux/ChildProcess.hpp"
#include "VeskPlatform/Linux/DesktopReach.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskShellCore/ShellDebugLogger.hpp"
#include "vesk/Linux/ConsentCommands.hpp"
#include "vesk/Linux/DoctorSecrets.hpp"
#include "vesk/Linux/DoctorServices.hpp"
#include "vesk/Table.hpp"

#include <sys/stat.h>
#include <unistd.h>

namespace vesk {

namespace {

using Decisions = std::optional<std::map<std::string, ConsentDecision>>;

Decisions readDecisions(const ConsentDatabase& database, DoctorReport& report) {
    try {
        return database.decisions();
    } catch (const ConsentDatabaseError& error) {
        report.blindness = error.description();
        report.findings.push_back({error.description(), std::nullopt});
        return std::nullopt;
    }
}

bool isReserved(CapabilityKind kind) {
    return kind == CapabilityKind::systemAudio || kind == CapabilityKind::microphone;
}

void examineConsent(CapabilityKind kind, const Decisions& decisions, DoctorCapability& capability) {
    if (!hasConsent(kind) || !decisions) return;
    capability.consent = consentEntries({kind}, *decisions).front().state;
    if (isGranted(*capability.consent) || isReserved(kind)) return;
    capability.findings.push_back(
        {"Consent is " + stateText(*capability.consent) + ".", "vesk consent grant " + capability.id});
}

DoctorCapability examineCapability(CapabilityKind kind, Environment& environment,
                                   const std::vector<StoreReport>& stores, const Decisions& decisions) {
    DoctorCapability capability{.id = std::string(rawValue(kind)),
                                .title = std::string(title(kind)),
                                .consent = std::nullopt,
                                .service = {},
                                .findings = {}};
    examineConsent(kind, decisions, capability);
    DoctorService service = serviceOf(kind, environment, stores);
    capability.service = std::move(service.service);
    for (DoctorFinding& finding : service.findings) capability.findings.push_back(std::move(finding));
    return capability;
}

void examineFolder(const std::string& path, const std::string& name, DoctorReport& report) {
    struct stat status {};
    if (path.empty()) {
        report.findings.push_back({"There is no " + name + ": the user has no home folder.", "Set HOME."});
    } else if (::stat(path.c_str(), &status) == 0 && !S_ISDIR(status.st_mode)) {
        report.findings.push_back({"The " + name + " " + path + " is no folder.", "Move the file away."});
    } else if (::access(path.c_str(), F_OK) == 0 && ::access(path.c_str(), W_OK | X_OK) != 0) {
        report.findings.push_back({"The " + name + " " + path + " cannot be written.", "chmod u+rwx " + path});
    }
}

void examineDialogs(Environment& environment, DoctorReport& report) {
    if (!desktopCanBeReached(environment) || installedProgram("zenity") || installedProgram("kdialog")) return;
    report.findings.push_back({"Nothing can show a question on the desktop.", "apt install zenity"});
}

void appendFindings(const std::vector<DoctorFinding>& findings, const std::string& subject,
                    std::vector<std::vector<std::string>>& rows) {
    for (const DoctorFinding& finding : findings)
        rows.push_back({subject, finding.problem, finding.remedy.value_or("-")});
}

std::string findingsText(const DoctorReport& report) {
    std::vector<std::vector<std::string>> rows{{"ABOUT", "FINDING", "REMEDY"}};
    for (const DoctorCapability& c : report.capabilities) appendFindings(c.findings, c.id, rows);
    appendFindings(report.secrets.findings, "secrets", rows);
    appendFindings(report.findings, "-", rows);
    return rows.size() == 1 ? "Nothing is missing.\n" : tableText(rows);
}

std::string storeText(const StoreReport& store) {
    if (!store.exists) return store.path + " (does not exist yet)";
    return store.path + " (collections: " + std::to_string(store.collections)
           + ", files: " + std::to_string(store.files) + ")";
}

} // namespace

DoctorReport examine(Environment& environment, const ConsentDatabase& database) {
    DoctorReport report;
    report.stores = inspectStores(environment);
    report.places = {stateFolder(environment), cacheFolder(environment), ShellDebugLogger::logFileURL(environment)};
    const Decisions decisions = readDecisions(database, report);
    for (const CapabilityKind kind : allCapabilityKinds)
        report.capabilities.push_back(examineCapability(kind, environment, report.stores, decisions));
    DoctorService secrets = examineSecrets(environment);
    report.secrets = {std::move(secrets.service), std::move(secrets.findings)};
    examineFolder(report.places.stateFolder, "state folder", report);
    examineFolder(report.places.cacheFolder, "cache folder", report);
    examineDialogs(environment, report);
    return report;
}

std::string doctorText(const DoctorReport& report) {
    std::vector<std::vector<std::string>> capabilities{{"CAPABILITY", "CONSENT", "SERVED BY"}};
    for (const DoctorCapability& c : report.capabilities)
        capabilities.push_back({c.id, c.consent ? stateText(*c.consent) : "-", c.service});
    std::vector<std::vector<std::string>> places;
    for (const StoreReport& store : report.stores) places.push_back({store.name, storeText(store)});
    places.push_back({"secrets", report.secrets.service});
    places.push_back({"state", report.places.stateFolder});
    places.push_back({"cache", report.places.cacheFolder});
    places.push_back({"log", report.places.logFile.value_or("-")});
    return tableText(capabilities) + "\n" + tableText(places) + "\n" + findingsText(report);
}

} // namespace vesk
