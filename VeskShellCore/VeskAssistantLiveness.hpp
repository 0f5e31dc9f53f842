#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/Records.hpp"
#include "VeskSupport/Task.hpp"

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace vesk {

/// Whether the assistant is alive. Not being able to tell is another answer than stopped.
enum class VeskAssistantLiveness { running, stopped, unknown };

template <>
inline constexpr auto rawValueTable<VeskAssistantLiveness> =
    std::to_array<std::pair<VeskAssistantLiveness, std::string_view>>({
        {VeskAssistantLiveness::running, "running"},
        {VeskAssistantLiveness::stopped, "stopped"},
        {VeskAssistantLiveness::unknown, "unknown"},
    });

/// Tells from the health file that the assistant's daemon renews, with a lease on it, and from the process that it
/// names. One small file is read; no process is started.
class VeskAssistantLivenessProbe {
public:
    /// Safe from any thread.
    using ProcessTest = std::function<bool(std::int64_t processIdentifier)>;

    /// The platform outlives whatever is asked. Without a process test, processes are those of the platform: one of
    /// another user counts as alive, a number that no process can have does not.
    VeskAssistantLivenessProbe(Platform& platform, std::string stateFilePath);
    VeskAssistantLivenessProbe(Platform& platform, std::string stateFilePath, ProcessTest processIsAlive);

    /// "Library/Application Support/Vesk/data/vesk-health.json" in the user's home.
    static std::string defaultStateFilePath(Platform& platform);

    /// Never fails: what cannot be told is unknown. Reads on a thread of its own, since a home may lie on a disk that
    /// does not answer.
    Task<VeskAssistantLiveness> currentState() const;

private:
    Platform& platform_;
    std::string stateFilePath_;
    ProcessTest processIsAlive_;
};

/// A process of another user counts as alive; a number that no process can have does not. Safe from any thread.
bool isProcessAlive(Processes& processes, std::int64_t processIdentifier);

} // namespace vesk
