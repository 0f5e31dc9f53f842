#include "vesk/LivenessCommand.hpp"

#include "VeskShellCore/VeskAssistantLiveness.hpp"
#include "VeskSupport/RunToTheEnd.hpp"

namespace vesk {
namespace {

struct LivenessRecord {
    VeskAssistantLiveness state = VeskAssistantLiveness::unknown;
};

Task<void> ask(const VeskAssistantLivenessProbe& probe, LivenessRecord& record) {
    record.state = co_await probe.currentState();
}

} // namespace

template <> inline constexpr auto recordTable<LivenessRecord> = recordFields(required("state", &LivenessRecord::state));

std::string runLiveness(Platform& platform) {
    const VeskAssistantLivenessProbe probe(platform, VeskAssistantLivenessProbe::defaultStateFilePath(platform));
    LivenessRecord record;
    runToTheEnd(ask(probe, record));
    return writeJson(toJson(record)) + "\n";
}

} // namespace vesk
