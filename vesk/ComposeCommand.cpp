#include "vesk/ComposeCommand.hpp"

#include "VeskShellCore/MediaOperations.hpp"
#include "VeskShellCore/RequestFiles.hpp"
#include "VeskSupport/RunToTheEnd.hpp"
#include "vesk/ProgressBar.hpp"

#include <utility>

namespace vesk {
namespace {

Task<void> compose(Platform& platform, CapabilityMediaComposeRequest request, ProgressBar& bar,
                   CapabilityMediaComposeResponse& response) {
    std::function<void(double)> progress = [&bar](double part) { bar.show(part); };
    auto composing = VeskMediaOperations::compose(platform, request.profile, std::move(request.inputs),
                                                  std::move(request.outputPath), request.imageDurationSeconds,
                                                  platform.mainBundle(), std::move(progress));
    response = co_await std::move(composing);
}

} // namespace

std::string runCompose(const ComposeCommand& command, Platform& platform) {
    auto request = readMediaComposeRequest(platform.fileReader(), command.requestPath);
    ProgressBar bar("Composing", command.quiet);
    CapabilityMediaComposeResponse response;
    runToTheEnd(compose(platform, std::move(request), bar, response));
    return writeJson(toJson(response)) + "\n";
}

} // namespace vesk
