#include "VeskShellCore/MediaOperations.hpp"

#include "VeskPlatform/FileManager.hpp"
#include "VeskShellCore/BrokerPaths.hpp"
#include "VeskShellCore/FileRemoval.hpp"
#include "VeskShellCore/ImageClip.hpp"
#include "VeskShellCore/MediaError.hpp"
#include "VeskShellCore/MediaInputs.hpp"
#include "VeskShellCore/OutputFile.hpp"
#include "VeskShellCore/ReelProfile.hpp"
#include "VeskShellCore/ReelTimeline.hpp"
#include "VeskShellCore/WorkingDirectory.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <utility>

namespace vesk::VeskMediaOperations {
namespace {

void checkCount(const std::vector<CapabilityMediaComposeInput>& inputs) {
    if (inputs.empty()) throw MediaError("Media composition needs at least one input file.");
    if (inputs.size() > reel::mostInputs) throw MediaError("Media composition accepts at most 24 inputs at a time.");
}

std::string standardized(FileManager& files, const std::string& path) {
    return standardizedPath(absolutePath(files, path));
}

/// The output is removed before the first input is read.
void checkNoInputIsLost(FileManager& files, const std::vector<CapabilityMediaComposeInput>& inputs,
                        const std::string& output) {
    for (const CapabilityMediaComposeInput& input : inputs)
        if (files.isOrContains(output, standardized(files, input.path)))
            throw MediaError("The film would take the place of its own input: " + displayName(input));
}

double imageDuration(const std::optional<double>& requested) {
    return std::max(std::min(requested.value_or(reel::defaultImageDuration), reel::longestImageDuration),
                    reel::shortestImageDuration);
}

Task<std::vector<std::string>> prepareClips(Platform& platform, std::vector<CapabilityMediaComposeInput> inputs,
                                            std::string workPath, double imageSeconds) {
    FileManager& files = platform.fileManager();
    std::vector<std::string> clips;
    for (std::size_t index = 0; index < inputs.size(); ++index) {
        const CapabilityMediaComposeInput& input = inputs[index];
        std::string path = standardized(files, input.path);
        if (!files.fileExists(path)) throw MediaError("Media input is no longer available: " + displayName(input));
        if (isImage(input)) {
            std::string clip = workPath + "/image-" + std::to_string(index) + ".mp4";
            auto writing = writeImageClip(platform, std::move(path), clip, imageSeconds);
            co_await std::move(writing);
            clips.push_back(std::move(clip));
        } else if (isVideo(input)) {
            clips.push_back(std::move(path));
        } else {
            throw MediaError("Unsupported media type for Reel composition: " + displayName(input));
        }
    }
    co_return clips;
}

Task<CapabilityMediaComposeResponse>
composeInstagramReel(Platform& platform, std::vector<CapabilityMediaComposeInput> inputs, std::string outputPath,
                     std::optional<double> imageDurationSeconds, Bundle bundle, std::function<void(double)> progress) {
    std::erase_if(inputs, [](const CapabilityMediaComposeInput& input) { return isBlank(input.path); });
    checkCount(inputs);
    FileManager& files = platform.fileManager();
    const std::string path = outputFilePath(files, outputPath);
    checkNoInputIsLost(files, inputs, path);
    files.createDirectory(parentFolder(path));
    removeIgnoringErrors(files, path);
    const auto work = files.makeWorkDirectory("vesk-media-compose-");

    auto preparing = prepareClips(platform, inputs, work->path(), imageDuration(imageDurationSeconds));
    std::vector<std::string> clips = co_await std::move(preparing);
    auto joining = concatenateVideoClips(platform.mediaFramework(), std::move(clips), path, std::move(progress));
    const double duration = co_await std::move(joining);

    CapabilityMediaComposeResponse response;
    response.brokerPath = executableBrokerPath(platform);
    response.bundlePath = vesk::bundlePath(bundle);
    response.filePath = path;
    response.fileName = lastPathComponent(path);
    response.mimeType = "video/mp4";
    response.profile = CapabilityMediaComposeProfile::instagramReel;
    response.width = static_cast<std::int64_t>(reel::width);
    response.height = static_cast<std::int64_t>(reel::height);
    response.durationSeconds = duration;
    response.inputCount = static_cast<std::int64_t>(inputs.size());
    response.detail = "Composed media into a vertical MP4 for Instagram Reel publishing.";
    co_return response;
}

} // namespace

Task<CapabilityMediaComposeResponse> compose(Platform& platform, CapabilityMediaComposeProfile,
                                             std::vector<CapabilityMediaComposeInput> inputs, std::string outputPath,
                                             std::optional<double> imageDurationSeconds, Bundle bundle,
                                             std::function<void(double)> progress) {
    // The one profile that there is.
    return composeInstagramReel(platform, std::move(inputs), std::move(outputPath), imageDurationSeconds,
                                std::move(bundle), std::move(progress));
}

} // namespace vesk::VeskMediaOperations
