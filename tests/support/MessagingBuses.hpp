#pragma once

#include "tests/support/PrivateBus.hpp"

#include <cstdlib>
#include <map>
#include <string>

namespace vesk::test {

/// A system bus and a session bus of our own.
struct MessagingBuses {
    PrivateBus system, session;

    /// What makes a program use them.
    std::map<std::string, std::string> variables() const {
        return {{"DBUS_SYSTEM_BUS_ADDRESS", system.address()}, {"DBUS_SESSION_BUS_ADDRESS", session.address()}};
    }
};

/// Variables of this process for as long as the object lives.
class ScopedVariables {
public:
    explicit ScopedVariables(std::map<std::string, std::string> variables) : variables_(std::move(variables)) {
        for (const auto& [name, value] : variables_) ::setenv(name.c_str(), value.c_str(), 1);
    }
    ~ScopedVariables() {
        for (const auto& [name, value] : variables_) ::unsetenv(name.c_str());
    }
    ScopedVariables(const ScopedVariables&) = delete;
    ScopedVariables& operator=(const ScopedVariables&) = delete;

private:
    std::map<std::string, std::string> variables_;
};

/// Buses that are not there, so that no test reaches those of the machine.
inline std::map<std::string, std::string> noBuses() {
    return {{"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/system"},
            {"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/session"}};
}

} // namespace vesk::test
