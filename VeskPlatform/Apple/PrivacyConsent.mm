#include "VeskPlatform/Apple/PrivacyConsent.hpp"

#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskSupport/CallbackAnswer.hpp"

#import <AVFoundation/AVFoundation.h>
#import <ApplicationServices/ApplicationServices.h>
#import <Contacts/Contacts.h>
#import <CoreGraphics/CoreGraphics.h>
#import <EventKit/EventKit.h>

#include <functional>
#include <utility>

namespace vesk {
namespace {

// The port's numbers are the frameworks' own.
static_assert(AVAuthorizationStatusNotDetermined == 0 && AVAuthorizationStatusRestricted == 1
              && AVAuthorizationStatusDenied == 2 && AVAuthorizationStatusAuthorized == 3);
static_assert(EKAuthorizationStatusNotDetermined == 0 && EKAuthorizationStatusRestricted == 1
              && EKAuthorizationStatusDenied == 2 && EKAuthorizationStatusFullAccess == 3
              && EKAuthorizationStatusWriteOnly == 4);
static_assert(CNAuthorizationStatusNotDetermined == 0 && CNAuthorizationStatusRestricted == 1
              && CNAuthorizationStatusDenied == 2 && CNAuthorizationStatusAuthorized == 3);
static_assert(EKEntityTypeEvent == 0 && EKEntityTypeReminder == 1 && CNEntityTypeContacts == 0);

/// Given by value to each function that makes a handler of it: a block that captures a reference keeps the reference,
/// and handlers are called when the functions have long returned.
using TakeAnswer = std::function<void(AccessAnswer)>;

AccessAnswer answerOf(BOOL granted, NSError* _Nullable error) {
    return {.granted = granted, .error = optionalUtf8(error.localizedDescription)};
}

void requestMicrophone(TakeAnswer take) {
    [AVCaptureDevice requestAccessForMediaType:AVMediaTypeAudio
                             completionHandler:^(BOOL granted) {
                               take(answerOf(granted, nil));
                             }];
}

/// The handler keeps the store until it was called.
EKEventStoreRequestAccessCompletionHandler handlerFor(EKEventStore* store, TakeAnswer take) {
    return ^(BOOL granted, NSError* _Nullable error) {
      (void)store;
      take(answerOf(granted, error));
    };
}

void requestEvents(TakeAnswer take) {
    EKEventStore* store = [[EKEventStore alloc] init];
    [store requestFullAccessToEventsWithCompletion:handlerFor(store, std::move(take))];
}

void requestReminders(TakeAnswer take) {
    EKEventStore* store = [[EKEventStore alloc] init];
    [store requestFullAccessToRemindersWithCompletion:handlerFor(store, std::move(take))];
}

void requestContacts(TakeAnswer take) {
    CNContactStore* store = [[CNContactStore alloc] init];
    [store requestAccessForEntityType:CNEntityTypeContacts
                    completionHandler:^(BOOL granted, NSError* _Nullable error) {
                      (void)store; // kept until here
                      take(answerOf(granted, error));
                    }];
}

void beginRequest(PrivacyService service, TakeAnswer take) {
    switch (service) {
    case PrivacyService::microphone: return requestMicrophone(std::move(take));
    case PrivacyService::events: return requestEvents(std::move(take));
    case PrivacyService::reminders: return requestReminders(std::move(take));
    case PrivacyService::contacts: return requestContacts(std::move(take));
    }
}

bool isTrusted(bool asksUser) {
    NSDictionary<NSString*, NSNumber*>* options = @{(__bridge NSString*)kAXTrustedCheckOptionPrompt : @(asksUser)};
    return AXIsProcessTrustedWithOptions((__bridge CFDictionaryRef)options) != 0;
}

} // namespace

AuthorizationStatus PrivacyConsent::authorizationStatus(PrivacyService service) {
    switch (service) {
    case PrivacyService::microphone:
        return static_cast<int>([AVCaptureDevice authorizationStatusForMediaType:AVMediaTypeAudio]);
    case PrivacyService::events:
        return static_cast<int>([EKEventStore authorizationStatusForEntityType:EKEntityTypeEvent]);
    case PrivacyService::reminders:
        return static_cast<int>([EKEventStore authorizationStatusForEntityType:EKEntityTypeReminder]);
    case PrivacyService::contacts:
        return static_cast<int>([CNContactStore authorizationStatusForEntityType:CNEntityTypeContacts]);
    }
}

bool PrivacyConsent::preflightScreenCapture() { return CGPreflightScreenCaptureAccess(); }

bool PrivacyConsent::isProcessTrusted() { return isTrusted(false); }

Task<AccessAnswer> PrivacyConsent::requestAccess(PrivacyService service) {
    const std::function<void(TakeAnswer)> begin = [service](TakeAnswer take) {
        beginRequest(service, std::move(take));
    };
    auto answer = answerOfCallback<AccessAnswer>(begin);
    co_return co_await std::move(answer);
}

Task<void> PrivacyConsent::requestScreenCapture() {
    CGRequestScreenCaptureAccess(); // a later probe tells the outcome
    co_return;
}

Task<void> PrivacyConsent::promptForProcessTrust() {
    isTrusted(true);
    co_return;
}

} // namespace vesk
