#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/ContactsModels.hpp"
#include "VeskSupport/Task.hpp"

#include <string>

/// Looks people up in the user's address books, and adds to them. Nothing that a person already has is removed or
/// rewritten, apart from employment that is given anew. Each operation checks its arguments, then access (which may ask
/// the user), then opens the store. Failures are ContactsErrors; errors of the store pass through.
namespace vesk::VeskContactsOperations {

/// Everyone whose names, employment, addresses or numbers hold the query, by name in the order of the locale.
Task<CapabilityContactsSearchResponse> searchContacts(Platform& platform, std::string query, const Bundle& bundle);

/// Makes a contact, or adds to the one that `targetId` names; giving the same number twice stores it twice.
Task<CapabilityContactSaveResponse> saveContact(Platform& platform, CapabilityContactSaveRequest request,
                                                const Bundle& bundle);

} // namespace vesk::VeskContactsOperations
