// The coordinator among threads: whoever calls from wherever, its operations run one at a time.

#include "tests/VeskShellCore/UpdateWorld.hpp"

#include <asio/post.hpp>
#include <asio/thread_pool.hpp>
#include <asio/use_awaitable.hpp>
#include <atomic>
#include <thread>

namespace vesk {
namespace {

/// Notices when two threads are in it at once.
class GuardedStore : public AppUpdateActivationRecordStoring {
public:
    std::atomic<int> inside = 0, overlaps = 0;

    std::optional<AppUpdateActivationRecord> load() override {
        const Visit visit(*this);
        return store_.load();
    }
    void save(const AppUpdateActivationRecord& record) override {
        const Visit visit(*this);
        store_.save(record);
    }
    void deleteRecord(const std::optional<Uuid>& expectedUpdateID) override {
        const Visit visit(*this);
        store_.deleteRecord(expectedUpdateID);
    }

private:
    struct Visit {
        explicit Visit(GuardedStore& visited) : store(visited) {
            if (store.inside++ > 0) ++store.overlaps;
            std::this_thread::yield();
        }
        ~Visit() { --store.inside; }
        GuardedStore& store;
    };
    test::FakeUpdateRecordStore store_;
};

TEST(UpdateThreads, OperationsOfManyThreadsRunOneAtATime) {
    asio::thread_pool pool(4);
    GuardedStore store;
    test::FakeRandomSource random;
    test::FakeUpdateRuntime runtime;
    runtime.install(true);
    runtime.delay = []() -> Task<void> {
        const auto executor = co_await asio::this_coro::executor;
        co_await asio::post(executor, asio::use_awaitable);
    };
    AppUpdateActivationCoordinatorOptions options;
    options.sleep = [](std::chrono::milliseconds) -> Task<void> { co_return; };
    options.now = [] { return Instant{}; };
    options.processIsAlive = [&](std::int64_t process) { return runtime.alive.contains(process); };
    AppUpdateActivationCoordinator coordinator(pool.get_executor(), {.currentIdentity = test::sourceRelease(),
                                                                     .runtimeIsBundledWithCurrentApp = true,
                                                                     .store = store,
                                                                     .randomSource = random,
                                                                     .service = runtime.service(),
                                                                     .options = options});
    std::vector<std::thread> callers;
    std::atomic<int> answers = 0;
    for (int i = 0; i < 4; ++i)
        callers.emplace_back([&] {
            for (int round = 0; round < 25; ++round) {
                auto preparing = asio::co_spawn(
                    pool, coordinator.prepareForRelaunch(test::targetRelease(), true, [](auto) {}), asio::use_future);
                auto recovering = asio::co_spawn(pool, coordinator.recoverAfterLaunch({}), asio::use_future);
                auto signingOut =
                    asio::co_spawn(pool, coordinator.suppressAssistantResumeAfterSignOut(), asio::use_future);
                try {
                    preparing.get();
                } catch (const ErrorRecord&) { // another one has started the assistant meanwhile
                }
                recovering.get();
                signingOut.get();
                ++answers;
            }
        });
    for (std::thread& caller : callers) caller.join();
    pool.join();
    EXPECT_EQ(answers, 100);
    EXPECT_EQ(store.overlaps, 0);
}

} // namespace
} // namespace vesk
