// To-dos of calendar files: found, parsed and changed. A change is there afterwards, and no to-do comes or goes.

#include "VeskPlatform/Linux/Vdir/TodoComponent.hpp"
#include "VeskPlatform/Linux/Vdir/TodoEdit.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <libical/ical.h>
#include <string>

namespace {

using namespace vesk;
using namespace vesk::vdir;

CalendarFile fileOf(std::string bytes) {
    CalendarFile file{std::move(bytes), {}};
    file.scanned = scanCalendarText(file.bytes);
    return file;
}

Reminder changed(Reminder reminder) {
    reminder.title = "Title, with; all\\ of\nit";
    reminder.notes.reset();
    reminder.due = DueComponents{2026, 7, 1, 9, 30, 0, "Europe/Berlin"};
    reminder.completed = !reminder.completed;
    reminder.completionDate.reset();
    return reminder;
}

void changeTodo(const CalendarFile& file, std::size_t place, Zones& zones) {
    const ScannedTodo& todo = file.scanned.todos[place];
    const auto current = parseTodo(file, todo, zones);
    if (!current) return;
    const Reminder wanted = changed(*current);
    const CalendarFile edited = fileOf(editedTodoText(file, todo, *current, *current, wanted, Instant{}));
    if (edited.scanned.todos.size() != file.scanned.todos.size()) std::abort();
    const auto saved = parseTodo(edited, edited.scanned.todos[place], zones);
    if (!saved || saved->identifier != current->identifier || saved->title != wanted.title || saved->notes
        || saved->due != wanted.due || saved->completed != wanted.completed)
        std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    icalerror_set_errors_are_fatal(0);
    const CalendarFile file = fileOf(std::string(reinterpret_cast<const char*>(data), size));
    Zones zones(std::make_shared<LocalCalendar>("Europe/Berlin"), [](const std::string&) {});
    for (std::size_t place = 0; place < file.scanned.todos.size(); ++place) changeTodo(file, place, zones);
    return 0;
}
