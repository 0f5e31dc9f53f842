#include "vesk/LivenessCommand.hpp"

#include "VeskShellCore/VeskAssistantLiveness.hpp"
#include "VeskSupport/RunToTheEnd.hpp"

namespace vesk {
namespace {

struct LivenessRecord {
    VeskAssistantLiveness state = VeskAssistantLiveness::unknown;
};

} // namespace

template <> inline constexpr auto recordTable<LivenessRecord> = recordFields(required("state", &LivenessRecord::state));

std::string runLiveness(const LivenessCommand&, Platform& platform) {
    const VeskAssistantLivenessProbe probe(platform, VeskAssistantLivenessProbe::defaultStateFilePath(platform));
    return writeJson(toJson(LivenessRecord{answerOf(probe.currentState())})) + "\n";
}

} // namespace vesk
