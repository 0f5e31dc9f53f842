#pragma once

#include "VeskPlatform/Linux/Messaging/Messaging.hpp"
#include "vesk/Linux/DoctorServices.hpp"

#include <vector>

namespace vesk {

/// What carries text messages: the service and the device that would send now, and what is amiss with the others.
DoctorService messagingService(const std::vector<MessagingServiceState>& states);

/// The same for what is on the buses; starts nothing.
DoctorService examineMessaging();

} // namespace vesk
