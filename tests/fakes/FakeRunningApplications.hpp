#pragma once

#include "VeskPlatform/RunningApplications.hpp"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vesk::test {

/// Applications of which one, or none, is in front; counts how often it was asked for, and records what was done.
class FakeRunningApplications : public RunningApplications {
public:
    std::vector<RunningApplication> all;
    std::optional<RunningApplication> front;
    int asked = 0;
    /// What `activate` answers, and what happens in the world along with it.
    bool accepts = true;
    std::function<void(const RunningApplication&)> whenActivated = [](const RunningApplication&) {};
    /// The status of the opener, and what happens in the world along with it; it may throw.
    int openerStatus = 0;
    std::function<void()> whenOpened = [] {};
    std::vector<RunningApplication> activated;
    std::vector<std::vector<std::string>> opened;

    std::vector<RunningApplication> list() override { return all; }
    std::optional<RunningApplication> frontmost() override {
        ++asked;
        return front;
    }
    bool activate(const RunningApplication& application) override {
        activated.push_back(application);
        whenActivated(application);
        return accepts;
    }
    Task<int> runOpener(std::vector<std::string> arguments) override {
        opened.push_back(std::move(arguments));
        whenOpened();
        co_return openerStatus;
    }
};

} // namespace vesk::test
