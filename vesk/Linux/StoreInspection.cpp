#include "vesk/Linux/StoreInspection.hpp"

#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskPlatform/Linux/Vcard/VcardContactStore.hpp"
#include "VeskPlatform/Linux/Vdir/VdirEventStore.hpp"
#include "VeskPlatform/Linux/Vdir/VdirReminderStore.hpp"
#include "VeskPlatform/Portable/SystemClock.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <filesystem>

namespace vesk {

namespace {

VdirSurvey surveyCalendars(const std::string& root) {
    SystemClock clock;
    VdirEventStore store(
        {.root = root, .cacheFolder = {}, .timeZone = "UTC", .userAddresses = {}, .log = [](const std::string&) {}},
        clock);
    return store.survey();
}

struct StoreRow {
    const char* name;
    CapabilityKind capability;
    std::string (*folder)(Environment&);
    VdirSurvey (*survey)(const std::string& root);
};

constexpr StoreRow storeRows[] = {
    {"calendars", CapabilityKind::calendar, calendarsFolder, surveyCalendars},
    {"to-dos", CapabilityKind::reminders, remindersFolder, VdirReminderStore::survey},
    {"contacts", CapabilityKind::contacts, contactsFolder, VcardContactStore::survey},
};

std::vector<std::string> repaired(std::vector<std::string> paths) {
    for (std::string& path : paths) path = repairedUtf8(path);
    return paths;
}

StoreReport inspect(const StoreRow& row, Environment& environment) {
    StoreReport report;
    report.name = row.name;
    report.capability = row.capability;
    const std::string root = row.folder(environment);
    report.path = repairedUtf8(root);
    std::error_code unknown;
    report.exists = !root.empty() && std::filesystem::exists(root, unknown);
    if (!report.exists) return report;
    try {
        const VdirSurvey survey = row.survey(root);
        report.collections = static_cast<std::int64_t>(survey.collections);
        report.files = static_cast<std::int64_t>(survey.files);
        report.unreadableFolders = repaired(survey.unreadableFolders);
        report.unreadableFiles = repaired(survey.unreadableFiles);
        report.unparsableFiles = repaired(survey.damagedFiles);
    } catch (const PosixError&) {
        report.unreadableFolders.push_back(report.path);
    }
    return report;
}

} // namespace

std::vector<StoreReport> inspectStores(Environment& environment) {
    std::vector<StoreReport> reports;
    for (const StoreRow& row : storeRows) reports.push_back(inspect(row, environment));
    return reports;
}

} // namespace vesk
