#pragma once

#include "VeskPlatform/Linux/ConsentAutomation.hpp"
#include "VeskPlatform/Linux/Messaging/Messaging.hpp"

#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace vesk {

/// Text messages through the module `messaging`, which is loaded when they are first asked for.
class LoadedMessaging : public MessagesScriptRunner {
public:
    /// `moduleFolder` is as in AdapterModule.
    explicit LoadedMessaging(std::string moduleFolder) : moduleFolder_(std::move(moduleFolder)) {}

    /// Throws AdapterModuleMissing where the module cannot be loaded.
    ScriptRunResult run(const MessagesScript& script) override;
    /// See Messaging. Throws AdapterModuleMissing.
    std::vector<MessagingServiceState> survey();

    /// The part of the messaging program in scripting; neither fails. A service without a device is there but not
    /// ready. Where the module cannot be loaded nothing is known and all counts as ready, so that `run` tells why.
    ApplicationReach reach();
    void start();

private:
    Messaging& messaging();

    std::string moduleFolder_;
    std::unique_ptr<Messaging> messaging_;
};

/// What the states of the services come to: ready where one has a device, whether or not it can send just now.
ApplicationReach reachOfMessaging(const std::vector<MessagingServiceState>& states);

} // namespace vesk
