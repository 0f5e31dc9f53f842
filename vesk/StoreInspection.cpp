#include "vesk/StoreInspection.hpp"

#include "VeskPlatform/Linux/SystemClock.hpp"
#include "VeskPlatform/Linux/UserFolders.hpp"
#include "VeskPlatform/Linux/Vdir/VdirEventStore.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <filesystem>

namespace vesk {

namespace {

VdirSurvey surveyOf(const std::string& root) {
    SystemClock clock;
    VdirEventStore store(
        {.root = root, .cacheFolder = {}, .timeZone = "UTC", .userAddresses = {}, .log = [](const std::string&) {}},
        clock);
    try {
        return store.survey();
    } catch (const PosixError&) {
        VdirSurvey survey;
        survey.unreadableFolders.push_back(root);
        return survey;
    }
}

std::vector<std::string> repaired(std::vector<std::string> paths) {
    for (std::string& path : paths) path = repairedUtf8(path);
    return paths;
}

} // namespace

StoreReport inspectCalendars(Environment& environment) {
    StoreReport report;
    const std::string root = calendarsFolder(environment);
    report.path = repairedUtf8(root);
    std::error_code unknown;
    report.exists = !root.empty() && std::filesystem::exists(root, unknown);
    if (!report.exists) return report;
    const VdirSurvey survey = surveyOf(root);
    report.collections = static_cast<std::int64_t>(survey.collections);
    report.files = static_cast<std::int64_t>(survey.files);
    report.unreadableFolders = repaired(survey.unreadableFolders);
    report.unreadableFiles = repaired(survey.unreadableFiles);
    report.unparsableFiles = repaired(survey.damagedFiles);
    return report;
}

} // namespace vesk
