#pragma once

#include "VeskPlatform/Bundle.hpp"
#include "VeskShellCore/BrokerPaths.hpp"

namespace vesk {

/// A response whose opening fields, `brokerPath` and `bundlePath`, name the bundle that was passed to its operation.
template <class Response> Response responseOf(const Bundle& bundle) {
    Response response;
    response.brokerPath = bundleNameBrokerPath(bundle);
    response.bundlePath = bundlePath(bundle);
    return response;
}

} // namespace vesk
