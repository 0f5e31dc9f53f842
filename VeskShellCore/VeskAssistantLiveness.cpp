#include "VeskShellCore/VeskAssistantLiveness.hpp"

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/Processes.hpp"
#include "VeskShellCore/ApplicationSupport.hpp"
#include "VeskSupport/DetachedWork.hpp"

#include <cerrno>
#include <chrono>
#include <limits>
#include <optional>
#include <utility>

namespace vesk {
namespace {

constexpr std::int64_t knownSchema = 1;

} // namespace

/// What the daemon writes. The lease ends at `expiresAtMs`, in milliseconds since 1970 UTC.
struct DaemonHealthState {
    std::int64_t schemaVersion = 0;
    bool running = false;
    std::optional<std::int64_t> pid;
    std::optional<std::int64_t> expiresAtMs;
};

template <>
inline constexpr auto recordTable<DaemonHealthState> =
    recordFields(required("schemaVersion", &DaemonHealthState::schemaVersion),
                 required("running", &DaemonHealthState::running), optional("pid", &DaemonHealthState::pid),
                 optional("expiresAtMs", &DaemonHealthState::expiresAtMs));

namespace {

std::optional<DaemonHealthState> readState(FileReader& files, const std::string& path) {
    try {
        const JsonLimits limits;
        return fromJson<DaemonHealthState>(parseJson(files.contents(path, limits.bytes), limits));
    } catch (const ErrorRecord&) { // missing, unreadable, or just being replaced
        return std::nullopt;
    }
}

std::int64_t milliseconds(Instant time) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(time.time_since_epoch()).count();
}

VeskAssistantLiveness livenessOf(const DaemonHealthState& state, Clock& clock,
                                 const VeskAssistantLivenessProbe::ProcessTest& processIsAlive) {
    using enum VeskAssistantLiveness;
    if (state.schemaVersion != knownSchema) return unknown;
    if (!state.running) return stopped; // a daemon that says so is believed, however old that is
    if (!state.expiresAtMs || *state.expiresAtMs < milliseconds(clock.now())) return unknown;
    if (state.pid.value_or(0) < 1) return unknown;
    return processIsAlive(*state.pid) ? running : stopped;
}

/// Having no thread to ask on is one more way of not being able to tell.
Task<VeskAssistantLiveness> orUnknown(Task<VeskAssistantLiveness> asked) {
    try {
        co_return co_await std::move(asked);
    } catch (const PosixError&) {
        co_return VeskAssistantLiveness::unknown;
    }
}

} // namespace

VeskAssistantLivenessProbe::VeskAssistantLivenessProbe(Platform& platform, std::string stateFilePath)
    : VeskAssistantLivenessProbe(platform, std::move(stateFilePath),
                                 [&processes = platform.processes()](std::int64_t processIdentifier) {
                                     return isProcessAlive(processes, processIdentifier);
                                 }) {}

VeskAssistantLivenessProbe::VeskAssistantLivenessProbe(Platform& platform, std::string stateFilePath,
                                                       ProcessTest processIsAlive)
    : platform_(platform), stateFilePath_(std::move(stateFilePath)), processIsAlive_(std::move(processIsAlive)) {}

std::string VeskAssistantLivenessProbe::defaultStateFilePath(Platform& platform) {
    return assistantDataItem(platform.environment(), "vesk-health.json");
}

Task<VeskAssistantLiveness> VeskAssistantLivenessProbe::currentState() const {
    const std::function<VeskAssistantLiveness()> work = [&files = platform_.fileReader(), &clock = platform_.clock(),
                                                         path = stateFilePath_, processIsAlive = processIsAlive_] {
        const auto state = readState(files, path);
        return state ? livenessOf(*state, clock, processIsAlive) : VeskAssistantLiveness::unknown;
    };
    return orUnknown(onThreadOfItsOwn<VeskAssistantLiveness>(work));
}

bool isProcessAlive(Processes& processes, std::int64_t processIdentifier) {
    if (processIdentifier < 1 || processIdentifier > std::numeric_limits<std::int32_t>::max()) return false;
    const int failure = processes.errorOfNullSignal(static_cast<std::int32_t>(processIdentifier));
    return failure == 0 || failure == EPERM;
}

} // namespace vesk
