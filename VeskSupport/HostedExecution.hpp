#pragma once

#include <asio/execution.hpp>
#include <asio/execution_context.hpp>
#include <atomic>
#include <functional>
#include <memory>
#include <utility>

namespace vesk {

/// Runs tasks on a loop that belongs to somebody else, such as the main run loop of an application: whatever is to run
/// is posted there. Timers of its tasks tick on a thread of their own and only post.
///
/// Like an `io_context` it knows when its work is done: as soon as nothing is waiting to run and no task or callback is
/// under way, `done` is posted. Both functions are called from any thread; what is posted runs on one thread, in order.
class HostedExecution : public asio::execution_context {
public:
    using Block = std::function<void()>;
    template <bool tracksWork> class BasicExecutor;
    using Executor = BasicExecutor<false>;

    HostedExecution(std::function<void(Block)> post, Block done) : post_(std::move(post)), done_(std::move(done)) {}
    HostedExecution(const HostedExecution&) = delete;
    HostedExecution& operator=(const HostedExecution&) = delete;
    /// Nothing may be under way any more but timers, which are dropped.
    ~HostedExecution() {
        shutdown();
        destroy();
    }

    Executor executor();

private:
    void beginWork() noexcept { work_.fetch_add(1, std::memory_order_relaxed); }
    void endWork() {
        if (work_.fetch_sub(1, std::memory_order_acq_rel) == 1) post_(done_);
    }
    void run(Block block) {
        beginWork();
        post_([this, block = std::move(block)]() mutable {
            block();
            block = nullptr; // may hold the last of the work
            endWork();
        });
    }

    std::function<void(Block)> post_;
    Block done_;
    std::atomic<long> work_ = 0;
};

/// The executor that tasks see. With `tracksWork` it counts as work itself.
template <bool tracksWork> class HostedExecution::BasicExecutor {
public:
    explicit BasicExecutor(HostedExecution& host) noexcept : host_(&host) { begin(); }
    BasicExecutor(const BasicExecutor& other) noexcept : host_(other.host_) { begin(); }
    BasicExecutor& operator=(const BasicExecutor& other) noexcept {
        BasicExecutor copy(other);
        std::swap(host_, copy.host_);
        return *this;
    }
    ~BasicExecutor() {
        if constexpr (tracksWork) host_->endWork();
    }

    template <class Function> void execute(Function&& function) const {
        // Functions of asio can be moved only.
        auto kept = std::make_shared<std::decay_t<Function>>(std::forward<Function>(function));
        host_->run([kept] { std::move (*kept)(); });
    }

    execution_context& query(asio::execution::context_t) const noexcept { return *host_; }
    static constexpr asio::execution::blocking_t query(asio::execution::blocking_t) noexcept {
        return asio::execution::blocking.never;
    }
    static constexpr asio::execution::outstanding_work_t query(asio::execution::outstanding_work_t) noexcept {
        if constexpr (tracksWork)
            return asio::execution::outstanding_work.tracked;
        else
            return asio::execution::outstanding_work.untracked;
    }
    BasicExecutor require(asio::execution::blocking_t::never_t) const noexcept { return *this; }
    BasicExecutor<true> require(asio::execution::outstanding_work_t::tracked_t) const noexcept {
        return BasicExecutor<true>(*host_);
    }
    BasicExecutor<false> require(asio::execution::outstanding_work_t::untracked_t) const noexcept {
        return BasicExecutor<false>(*host_);
    }

    friend bool operator==(const BasicExecutor& one, const BasicExecutor& other) noexcept {
        return one.host_ == other.host_;
    }
    friend bool operator!=(const BasicExecutor& one, const BasicExecutor& other) noexcept { return !(one == other); }

private:
    void begin() noexcept {
        if constexpr (tracksWork) host_->beginWork();
    }

    HostedExecution* host_;
};

inline HostedExecution::Executor HostedExecution::executor() { return Executor(*this); }

} // namespace vesk
