#pragma once

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/LocaleSettings.hpp"
#include "VeskPlatform/MonotonicClock.hpp"
#include "VeskPlatform/Processes.hpp"
#include "VeskPlatform/RandomSource.hpp"
#include "VeskPlatform/SerialQueue.hpp"
#include "VeskPlatform/SettingsOpener.hpp"
#include "VeskPlatform/Sleeper.hpp"

#include <cerrno>
#include <deque>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

namespace vesk::test {

/// Stands still until a test moves it. Starts at 2026-04-26T08:30:00Z.
class FakeClock : public Clock {
public:
    Instant time{std::chrono::sys_days{std::chrono::year{2026} / 4 / 26} + std::chrono::hours(8)
                 + std::chrono::minutes(30)};
    Instant now() override { return time; }
};

class FakeEnvironment : public Environment {
public:
    std::map<std::string, std::string> variables;
    std::string home = "/home/dana";
    std::optional<std::string> startedAs = "VeskCapabilityBroker";

    std::optional<std::string> value(const std::string& name) override {
        const auto found = variables.find(name);
        return found == variables.end() ? std::nullopt : std::optional(found->second);
    }
    std::string homeDirectory() override { return home; }
    std::optional<std::string> argumentZero() override { return startedAs; }
};

class FakeLocaleSettings : public LocaleSettings {
public:
    std::string zone = "Europe/Berlin";
    std::string identifier = "en_US";
    std::string timeZone() override { return zone; }
    std::string locale() override { return identifier; }
};

/// Holds blocks until `drain`, so that tests see what happens before and after the queue runs.
class FakeSerialQueue : public SerialQueue {
public:
    void async(std::function<void()> block) override {
        const std::scoped_lock lock(mutex_);
        blocks_.push_back(std::move(block));
    }
    void drain() override {
        while (const auto block = next()) block();
    }
    /// How many wait for `drain`.
    std::size_t waiting() {
        const std::scoped_lock lock(mutex_);
        return blocks_.size();
    }

private:
    /// Empty where none is left.
    std::function<void()> next() {
        const std::scoped_lock lock(mutex_);
        if (blocks_.empty()) return {};
        auto block = std::move(blocks_.front());
        blocks_.pop_front();
        return block;
    }

    std::mutex mutex_; // called from threads
    std::deque<std::function<void()>> blocks_;
};

class FakeSettingsOpener : public SettingsOpener {
public:
    bool launches = true;
    std::vector<std::string> launched, opened;
    bool launchOpener(const std::string& url) override {
        launched.push_back(url);
        return launches;
    }
    void openUrl(const std::string& url) override { opened.push_back(url); }
};

/// Processes by number, with the error of a signal to each; others are not there.
class FakeProcesses : public Processes {
public:
    std::map<std::int32_t, int> errors;
    int errorOfNullSignal(std::int32_t processIdentifier) override {
        const auto found = errors.find(processIdentifier);
        return found == errors.end() ? ESRCH : found->second;
    }
};

/// Counts instead: 1, 2, 3 … and on from where it was, so that no two fillings are the same.
class FakeRandomSource : public RandomSource {
public:
    std::uint8_t last = 0;
    void fill(std::span<std::uint8_t> bytes) override {
        const std::scoped_lock lock(mutex_);
        for (std::uint8_t& byte : bytes) byte = ++last;
    }

private:
    std::mutex mutex_; // called from threads
};

/// Stands still until a test, or a sleeper, moves it.
class FakeMonotonicClock : public MonotonicClock {
public:
    std::chrono::nanoseconds time{std::chrono::hours(5)};
    std::chrono::nanoseconds now() override { return time; }
};

/// Sleeps no time at all, and remembers how long it would have been; `clock` has moved on by as much.
class FakeSleeper : public Sleeper {
public:
    explicit FakeSleeper(FakeMonotonicClock& clock) : clock_(clock) {}

    std::vector<std::chrono::milliseconds> slept;
    /// What happens in the world after each sleep.
    std::function<void()> whenAwake = [] {};

    Task<void> sleep(std::chrono::milliseconds duration) override {
        slept.push_back(duration);
        clock_.time += duration;
        whenAwake();
        co_return;
    }

private:
    FakeMonotonicClock& clock_;
};

} // namespace vesk::test
