#pragma once

#include "VeskPlatform/RunningApplications.hpp"
#include "VeskShellCore/BrokerPaths.hpp"

#include <optional>

namespace vesk {

/// A response whose opening fields, `brokerPath` and `bundlePath`, name the executable that answers.
template <class Response> Response controlResponseOf(Platform& platform) {
    Response response;
    response.brokerPath = executableBrokerPath(platform);
    response.bundlePath = bundlePath(platform.mainBundle());
    return response;
}

template <class Response> void describe(const RunningApplication& application, Response& response) {
    response.appName = application.localizedName;
    response.bundleIdentifier = application.bundleIdentifier;
    response.processIdentifier = application.processIdentifier;
}

} // namespace vesk
