#pragma once

#include "VeskPlatform/Linux/Vdir/CalendarFile.hpp"
#include "VeskPlatform/ReminderStore.hpp"

#include <string>

namespace vesk::vdir {

/// A calendar object (RFC 5545) that holds one new to-do. Throws ErrorRecord where its due date cannot be written.
std::string newTodoText(const Reminder& reminder, const std::string& uid, Instant now);

/// The file's bytes with the title, notes, due date and completion of one VTODO changed where `wanted` differs from
/// `given`, what the store gave out earlier; where it does not, what stands in the file by now (`current`) stays. All
/// other bytes stay, and all of them where nothing differs. Throws ErrorRecord where the due date cannot be written.
std::string editedTodoText(const CalendarFile& file, const ScannedTodo& todo, const Reminder& given,
                           const Reminder& current, const Reminder& wanted, Instant now);

/// The file's bytes without the VTODOs of that UID.
std::string textWithoutTodo(const CalendarFile& file, const std::string& uid);

} // namespace vesk::vdir
