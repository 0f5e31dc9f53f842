#include "VeskShellCore/ContactsAccess.hpp"

#include "VeskPlatform/Consent.hpp"
#include "VeskShellCore/ContactsError.hpp"

namespace vesk::VeskContactsOperations {
namespace {

using Code = ContactsError::Code;

ContactsError accessDenied() {
    return {Code::accessRefused,
            "Contacts access was denied for Vesk. Enable Contacts access in System Settings and try again."};
}

} // namespace

Task<bool> requestContactAccess(Platform& platform) {
    const AccessAnswer answer = co_await platform.consent().requestAccess(PrivacyService::contacts);
    co_return answer.granted;
}

Task<void> ensureContactAccess(Platform& platform) {
    switch (platform.consent().authorizationStatus(PrivacyService::contacts)) {
    case 0: break;
    case 1: throw ContactsError(Code::accessRefused, "Contacts access is restricted by macOS or device policy.");
    case 2: throw accessDenied();
    case 3: co_return;
    default: throw ContactsError(Code::accessUnknown, "Contacts authorization returned an unknown state.");
    }
    // Named on purpose: g++ 12 lays out the frame wrongly for a co_await inside a condition.
    const bool granted = co_await requestContactAccess(platform);
    if (!granted) throw accessDenied();
}

} // namespace vesk::VeskContactsOperations
