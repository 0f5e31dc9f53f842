#pragma once

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/ConsentDatabase.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/Records.hpp"
#include "vesk/Linux/StoreInspection.hpp"

#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// Something that is missing or wrong, and the package or command that mends it.
struct DoctorFinding {
    std::string problem;
    std::optional<std::string> remedy;
};

template <>
inline constexpr auto recordTable<DoctorFinding> =
    recordFields(required("problem", &DoctorFinding::problem), optional("remedy", &DoctorFinding::remedy));

/// One capability: the consent (absent where it has none or it could not be read), what serves it, what is amiss.
struct DoctorCapability {
    std::string id;
    std::string title;
    std::optional<CapabilityAuthorizationState> consent;
    std::string service;
    std::vector<DoctorFinding> findings;
};

template <>
inline constexpr auto recordTable<DoctorCapability> =
    recordFields(required("id", &DoctorCapability::id), required("title", &DoctorCapability::title),
                 optional("consent", &DoctorCapability::consent), required("service", &DoctorCapability::service),
                 required("findings", &DoctorCapability::findings));

struct DoctorPlaces {
    std::string stateFolder;
    std::string cacheFolder;
    std::optional<std::string> logFile;
};

template <>
inline constexpr auto recordTable<DoctorPlaces> =
    recordFields(required("stateFolder", &DoctorPlaces::stateFolder),
                 required("cacheFolder", &DoctorPlaces::cacheFolder), optional("logFile", &DoctorPlaces::logFile));

/// What holds the assistant's secrets, and what is amiss there.
struct DoctorSecrets {
    std::string service;
    std::vector<DoctorFinding> findings;
};

template <>
inline constexpr auto recordTable<DoctorSecrets> =
    recordFields(required("service", &DoctorSecrets::service), required("findings", &DoctorSecrets::findings));

struct DoctorReport {
    std::vector<DoctorCapability> capabilities;
    std::vector<StoreReport> stores;
    DoctorPlaces places;
    DoctorSecrets secrets;
    /// What concerns no single capability.
    std::vector<DoctorFinding> findings;
    /// Why the doctor could not look at the consents; not printed with the report.
    std::optional<std::string> blindness;
};

template <>
inline constexpr auto recordTable<DoctorReport> =
    recordFields(required("capabilities", &DoctorReport::capabilities), required("stores", &DoctorReport::stores),
                 required("places", &DoctorReport::places), required("secrets", &DoctorReport::secrets),
                 required("findings", &DoctorReport::findings));

/// Looks at everything and changes nothing.
DoctorReport examine(Environment& environment, const ConsentDatabase& database);

/// The report for people.
std::string doctorText(const DoctorReport& report);

} // namespace vesk
