#pragma once

#include "VeskShellCore/PackagedDoctorReport.hpp"
#include "VeskShellCore/PackagedSettings.hpp"
#include "VeskSupport/Records.hpp"

#include <optional>
#include <string>

namespace vesk {

/// What a runtime is first set up with.
struct BootstrapInitPayload {
    std::optional<PackagedSettings> settings;
    std::optional<bool> installCoreTools;
    std::optional<bool> forceInstallCoreTools;

    bool operator==(const BootstrapInitPayload&) const = default;
};

template <>
inline constexpr auto recordTable<BootstrapInitPayload> =
    recordFields(optional("settings", &BootstrapInitPayload::settings),
                 optional("install_core_tools", &BootstrapInitPayload::installCoreTools),
                 optional("force_install_core_tools", &BootstrapInitPayload::forceInstallCoreTools));

struct BootstrapInitResponse {
    bool ok = false;
    std::string runtimeMode;
    std::string appSupportDir;
    std::string settingsPath;
    PackagedDoctorReport doctor;

    bool operator==(const BootstrapInitResponse&) const = default;
};

template <>
inline constexpr auto recordTable<BootstrapInitResponse> = recordFields(
    required("ok", &BootstrapInitResponse::ok), required("runtimeMode", &BootstrapInitResponse::runtimeMode),
    required("appSupportDir", &BootstrapInitResponse::appSupportDir),
    required("settingsPath", &BootstrapInitResponse::settingsPath), required("doctor", &BootstrapInitResponse::doctor));

} // namespace vesk
