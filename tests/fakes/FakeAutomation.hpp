#pragma once

#include "VeskPlatform/ApplicationAutomation.hpp"

#include <functional>
#include <map>
#include <set>

namespace vesk::test {

/// Applications with a consent each. Records what could show or start something: "launch COMMAND", "ask IDENTIFIER".
class FakeAutomation : public ApplicationAutomation {
public:
    std::set<std::string> installed, running;
    /// By identifier; an application without an entry cannot be described.
    std::map<std::string, AutomationResult> results;
    /// What a prompt leaves behind where the user has to be asked.
    std::optional<AutomationResult> resultAfterAnswer;
    /// What happens when an application is launched; it runs afterwards unless this says otherwise.
    std::function<void(FakeAutomation&, const std::string& bundleIdentifier)> onLaunch =
        [](FakeAutomation& self, const std::string& id) { self.running.insert(id); };
    std::vector<std::string> calls;

    bool isInstalled(const std::string& id) override { return installed.contains(id); }
    bool isRunning(const std::string& id) override { return running.contains(id); }
    void launchAndWait(const ApplicationLaunch& launch) override {
        std::string call = "launch " + launch.bundleIdentifier + " by";
        for (const std::string& word : launch.command) call += " " + word;
        calls.push_back(call);
        onLaunch(*this, launch.bundleIdentifier);
    }
    std::optional<AutomationResult> permission(const std::string& id) override {
        ++probes;
        const auto found = results.find(id);
        return found == results.end() ? std::nullopt : std::optional(found->second);
    }
    Task<std::optional<AutomationResult>> requestPermission(std::string id) override {
        calls.push_back("ask " + id);
        const auto found = results.find(id);
        if (found == results.end()) co_return std::nullopt;
        if (found->second == -1744 && resultAfterAnswer) found->second = *resultAfterAnswer;
        co_return found->second;
    }

    int probes = 0;
};

} // namespace vesk::test
