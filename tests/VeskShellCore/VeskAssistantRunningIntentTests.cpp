#include "VeskShellCore/VeskAssistantRunningIntent.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

struct Case {
    const char* name;
    bool installed = false, loaded = false, running = false;
    std::optional<bool> enabled{}, processAlive{}, durable{};
    bool wanted = false;
};

TEST(VeskAssistantRunningIntentTests, DecidesInOrder) {
    const Case cases[] = {
        {.name = "nothing"},
        {.name = "kept stop, running service", .installed = true, .loaded = true, .running = true, .durable = false},
        {.name = "kept start, nothing there", .durable = true, .wanted = true},
        {.name = "running", .running = true, .wanted = true},
        {.name = "loaded", .loaded = true, .wanted = true},
        {.name = "daemon alive, not installed", .processAlive = true, .wanted = true},
        {.name = "daemon dead, not installed", .processAlive = false},
        {.name = "daemon dead, installed", .installed = true, .processAlive = false, .wanted = true},
        {.name = "installed", .installed = true, .wanted = true},
        {.name = "installed, enabled", .installed = true, .enabled = true, .wanted = true},
        {.name = "installed, disabled", .installed = true, .enabled = false},
        {.name = "running, disabled", .installed = true, .running = true, .enabled = false, .wanted = true},
        {.name = "enabled, not installed", .enabled = true},
    };
    for (const Case& each : cases) {
        PackagedServiceStatus status;
        status.installed = each.installed;
        status.loaded = each.loaded;
        status.running = each.running;
        status.enabled = each.enabled;
        if (each.processAlive) status.daemonRuntime.emplace().processAlive = *each.processAlive;
        EXPECT_EQ(VeskAssistantRunningIntent::resolve(status, each.durable), each.wanted) << each.name;
    }
}

} // namespace
} // namespace vesk
