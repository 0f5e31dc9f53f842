#pragma once

#include "VeskPlatform/Environment.hpp"
#include "vesk/Linux/Doctor.hpp"

namespace vesk {

/// What serves a capability on this system, and what it lacks.
struct DoctorService {
    std::string service;
    std::vector<DoctorFinding> findings;
};

DoctorService serviceOf(CapabilityKind kind, Environment& environment, const std::vector<StoreReport>& stores);

} // namespace vesk
