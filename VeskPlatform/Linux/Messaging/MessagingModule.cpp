#include "VeskPlatform/Linux/Messaging/DeviceMessaging.hpp"

/// A MessagingFactory.
extern "C" __attribute__((visibility("default"))) vesk::Messaging* veskMessaging() {
    return new vesk::DeviceMessaging();
}
