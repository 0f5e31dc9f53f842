#include "VeskPlatform/Apple/OsascriptMessagesRunner.hpp"

#include "VeskPlatform/Apple/FinishedTask.hpp"

#include <utility>

namespace vesk {

ScriptRunResult OsascriptMessagesRunner::run(const MessagesScript& script) {
    FinishedTask task = finishedTask(script.program, script.arguments);
    return {.status = task.status, .output = std::move(task.output), .errors = std::move(task.errors)};
}

} // namespace vesk
