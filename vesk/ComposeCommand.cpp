#include "vesk/ComposeCommand.hpp"

#include "VeskShellCore/MediaOperations.hpp"
#include "VeskShellCore/RequestFiles.hpp"
#include "VeskSupport/RunToTheEnd.hpp"
#include "vesk/ProgressBar.hpp"

#include <utility>

namespace vesk {
std::string runCompose(const ComposeCommand& command, Platform& platform) {
    auto request = readMediaComposeRequest(platform.fileReader(), command.requestPath);
    ProgressBar bar("Composing", command.quiet);
    auto composing = VeskMediaOperations::compose(platform, request.profile, std::move(request.inputs),
                                                  std::move(request.outputPath), request.imageDurationSeconds,
                                                  platform.mainBundle(), [&bar](double part) { bar.show(part); });
    return writeJson(toJson(answerOf(std::move(composing)))) + "\n";
}

} // namespace vesk
