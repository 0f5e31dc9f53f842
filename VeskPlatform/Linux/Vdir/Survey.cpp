#include "VeskPlatform/Linux/Vdir/Survey.hpp"

#include "VeskPlatform/Linux/Vdir/Folder.hpp"
#include "VeskPlatform/Linux/Vdir/Parallel.hpp"
#include "VeskSupport/ErrorRecord.hpp"

namespace vesk::vdir {
namespace {

std::vector<std::string> sortedPaths(const std::string& folder, const std::string& extension) {
    std::vector<std::string> paths = sortedFileNames(folder, extension);
    for (std::string& path : paths) path.insert(0, folder + "/");
    return paths;
}

void surveyCollection(const std::vector<std::string>& paths,
                      const std::function<FileHealth(const std::string& path)>& healthOf, VdirSurvey& survey) {
    std::vector<FileHealth> health(paths.size(), FileHealth::whole);
    inParallel(paths.size(), 32, [&](std::size_t i) { health[i] = healthOf(paths[i]); });
    survey.files += paths.size();
    for (std::size_t i = 0; i < paths.size(); ++i) {
        if (health[i] == FileHealth::damaged) survey.damagedFiles.push_back(paths[i]);
        if (health[i] == FileHealth::unreadable) survey.unreadableFiles.push_back(paths[i]);
    }
}

} // namespace

VdirSurvey surveyOf(const std::string& root, const std::string& extension,
                    const std::function<FileHealth(const std::string& path)>& healthOf, RootIs rootIs) {
    VdirSurvey survey;
    const auto unreadable = [&](const std::string& path, int) { survey.unreadableFolders.push_back(path); };
    const auto collections = findCollections(root, extension, unreadable, rootIs);
    for (const Collection& collection : collections) {
        ++survey.collections;
        try {
            surveyCollection(sortedPaths(collection.path, extension), healthOf, survey);
        } catch (const PosixError&) {
            survey.unreadableFolders.push_back(collection.path);
        }
    }
    return survey;
}

} // namespace vesk::vdir
