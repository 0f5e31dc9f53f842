#pragma once

#include "VeskPlatform/Linux/Vdir/CalendarFile.hpp"
#include "VeskPlatform/Linux/Vdir/Zones.hpp"
#include "VeskPlatform/ReminderStore.hpp"

#include <optional>

namespace vesk::vdir {

/// The to-do that a VTODO of the file tells, without a list; none where the library cannot read it. A due date in UTC
/// or in a zone is given in the current zone, a floating one without a zone, a plain or unreadable one without a time.
std::optional<Reminder> parseTodo(const CalendarFile& file, const ScannedTodo& todo, Zones& zones);

} // namespace vesk::vdir
