#pragma once

#include "VeskSupport/CallbackAnswer.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Task.hpp"

#include <exception>
#include <functional>
#include <optional>
#include <system_error>
#include <thread>
#include <utility>

namespace vesk {

/// Runs `work`, which may block for as long as it likes, on a thread of its own while the caller is suspended; then
/// returns what it returned, or throws what it threw, on the caller's executor. No pool: work that never ends must not
/// keep other work from beginning. The executor outlives the work, and whatever `work` refers to must, too. Throws
/// PosixError where no thread can be started.
template <class T> Task<T> onThreadOfItsOwn(std::function<T()> work) {
    struct Outcome {
        std::optional<T> value;
        std::exception_ptr failure;
    };
    const std::function<void(std::function<void(Outcome)>)> begin = [&work](std::function<void(Outcome)> answer) {
        try {
            std::thread([work = std::move(work), answer = std::move(answer)]() mutable {
                Outcome outcome;
                try {
                    outcome.value.emplace(work());
                } catch (...) {
                    outcome.failure = std::current_exception();
                }
                work = nullptr; // what it holds goes before the caller goes on
                answer(std::move(outcome));
            }).detach();
        } catch (const std::system_error& error) {
            throw PosixError(error.code().value(), "a thread");
        }
    };
    Outcome outcome = co_await answerOfCallback<Outcome>(begin);
    if (outcome.failure) std::rethrow_exception(outcome.failure);
    co_return std::move(*outcome.value);
}

} // namespace vesk
