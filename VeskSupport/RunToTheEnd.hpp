#pragma once

#include "VeskSupport/Task.hpp"

#include <optional>
#include <utility>

namespace vesk {

/// Makes the calling thread the main executor for one task and whatever that starts. Throws what it throws, and
/// ErrorRecord "VeskCapabilityBroker" 70 for one that is never answered.
void runToTheEnd(Task<void> task);

template <class T> Task<void> keepAnswer(Task<T> task, std::optional<T>& answer) {
    answer.emplace(co_await std::move(task));
}
/// The same for a task with an answer, which is returned.
template <class T> T answerOf(Task<T> task) {
    std::optional<T> answer;
    runToTheEnd(keepAnswer(std::move(task), answer));
    return *std::move(answer);
}

} // namespace vesk
