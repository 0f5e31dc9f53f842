#pragma once

#include "VeskPlatform/Linux/Secrets/LinuxKeychain.hpp"
#include "vesk/Linux/DoctorServices.hpp"

namespace vesk {

/// Where the secrets lie and what is amiss there: a locked service is a finding only where nobody could be asked.
DoctorService secretsService(const KeychainSurvey& survey, bool canPrompt);

/// The same for this session; asks nothing, starts nothing and changes nothing.
DoctorService examineSecrets(Environment& environment);

} // namespace vesk
