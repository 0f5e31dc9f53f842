#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/TodoModels.hpp"

#include <optional>
#include <string>

/// The assistant's own to-do list, one list named "Vesk Todos" among the user's. To-dos of other lists are out of
/// reach. Each operation checks its arguments, then access (it never prompts), then opens the store and makes sure of
/// the list. Failures are TodoErrors; errors of the store pass through.
namespace vesk::VeskTodoOperations {

inline constexpr const char* todoListName = "Vesk Todos";

CapabilityTodoResponse list(Platform& platform, CapabilityTodoView view, const Bundle& bundle);
CapabilityTodoResponse stats(Platform& platform, const Bundle& bundle);
/// `due`: a date, a date and time, or ISO 8601 with an offset.
CapabilityTodoResponse add(Platform& platform, const std::string& title, const std::optional<std::string>& notes,
                           const std::optional<std::string>& due, const Bundle& bundle);
CapabilityTodoResponse complete(Platform& platform, const std::string& id, const Bundle& bundle);
CapabilityTodoResponse reopen(Platform& platform, const std::string& id, const Bundle& bundle);
/// The response has the to-do as it was. Named with an underscore, since the plain word belongs to the language.
CapabilityTodoResponse delete_(Platform& platform, const std::string& id, const Bundle& bundle);
/// What is absent or blank stays as it is; `due` wins over `clearDue`.
CapabilityTodoResponse update(Platform& platform, const std::string& id, const std::optional<std::string>& title,
                              const std::optional<std::string>& notes, const std::optional<std::string>& due,
                              bool clearDue, const Bundle& bundle);

} // namespace vesk::VeskTodoOperations
