#include "VeskSupport/RunToTheEnd.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <asio/co_spawn.hpp>
#include <asio/io_context.hpp>
#include <exception>
#include <utility>

namespace vesk {

void runToTheEnd(Task<void> task) {
    asio::io_context executor(1);
    bool ended = false;
    std::exception_ptr failure;
    asio::co_spawn(executor, std::move(task), [&](std::exception_ptr thrown) {
        ended = true;
        failure = std::move(thrown);
    });
    executor.run();
    // Nothing left to run and no answer: something dropped the task that waited for it.
    if (!ended) throw ErrorRecord("VeskCapabilityBroker", 70, "The command ended without an answer.");
    if (failure) std::rethrow_exception(failure);
}

} // namespace vesk
