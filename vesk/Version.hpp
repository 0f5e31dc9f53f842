#pragma once

#include "VeskSupport/Records.hpp"

#include <string>

namespace vesk {

/// What this program was built as.
struct VersionRecord {
    std::string version;
    std::string build;
    std::string authOrigin;
    std::string releaseOrigin;
};

template <>
inline constexpr auto recordTable<VersionRecord> =
    recordFields(required("version", &VersionRecord::version), required("build", &VersionRecord::build),
                 required("authOrigin", &VersionRecord::authOrigin),
                 required("releaseOrigin", &VersionRecord::releaseOrigin));

VersionRecord builtVersion();

} // namespace vesk
