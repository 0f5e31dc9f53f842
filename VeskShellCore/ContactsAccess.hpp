#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/Task.hpp"

namespace vesk::VeskContactsOperations {

/// Passes when the address books may be read and written, asking the user where nothing is decided yet. Otherwise a
/// ContactsError: 403 for a refusal, 500 for a state that is none.
Task<void> ensureContactAccess(Platform& platform);

/// Asks the user; whether access was granted. An error of the question counts as no.
Task<bool> requestContactAccess(Platform& platform);

} // namespace vesk::VeskContactsOperations
