#pragma once

#include "vesk/Linux/DoctorServices.hpp"

namespace vesk {

/// What serves seeing and driving the desktop, and what is amiss: both look as the capability itself would. A dormant
/// bus or portal wakes up; the user is asked nothing.
DoctorService examineAccessibility(Environment& environment);
/// The same for pictures of the screen.
DoctorService examineScreenRecording(Environment& environment);

} // namespace vesk
