#include "VeskPlatform/Linux/Messaging/ModemManagerTexting.hpp"

#include "VeskSupport/Iso8601.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace vesk {

namespace {

constexpr const char* modemInterface = "org.freedesktop.ModemManager1.Modem";
constexpr const char* messagingInterface = "org.freedesktop.ModemManager1.Modem.Messaging";
constexpr const char* smsInterface = "org.freedesktop.ModemManager1.Sms";

/// MMModemState; those below `registered` that are not named are on their way up or down.
enum ModemState { failed = -1, locked = 2, disabled = 3, registered = 8 };

/// MMModemStateFailedReason.
std::string failureText(std::int64_t reason) {
    constexpr std::array texts{"for an unknown reason", "for an unknown reason", "because its SIM card is missing",
                               "because its SIM card is faulty"};
    return reason >= 0 && reason < std::ssize(texts) ? texts[static_cast<std::size_t>(reason)] : texts[0];
}

/// What is on the bus of one modem.
struct Modem {
    std::string path;
    BusProperties properties;
    bool isModem = false;
    bool hasMessaging = false;

    std::int64_t state() const { return integerOf(properties, "State", 0); }
};

/// Such as "0" of ".../Modem/0", which is also how mmcli(1) calls it.
std::string lastPart(const std::string& path) { return path.substr(path.rfind('/') + 1); }

/// With the command that unlocks it, which wants the number of the card.
std::string lockedText(const Modem& modem) {
    const std::string card = lastPart(textOf(modem.properties, "Sim"));
    return "is locked: unlock its SIM card" + (card.empty() ? "" : " (mmcli --sim=" + card + " --pin=PIN)");
}

std::string obstacleOf(const Modem& modem) {
    switch (modem.state()) {
    case failed: return "has failed " + failureText(integerOf(modem.properties, "StateFailedReason", 0));
    case locked: return lockedText(modem);
    case disabled: return "is switched off: enable it (mmcli --modem=" + lastPart(modem.path) + " --enable)";
    default: return modem.state() < registered ? "is not registered in a network" : "";
    }
}

/// Whether text messages are to be expected of it at all: a modem that is locked or has failed shows no messaging yet.
bool mayText(const Modem& modem) {
    return modem.isModem && (modem.hasMessaging || modem.state() == locked || modem.state() == failed);
}

TextingDevice deviceOf(const Modem& modem) {
    std::string name = textOf(modem.properties, "Manufacturer");
    const std::string model = textOf(modem.properties, "Model");
    if (!name.empty() && !model.empty()) name += ' ';
    name += model;
    return {modem.path, name.empty() ? "modem " + lastPart(modem.path) : name, obstacleOf(modem)};
}

Modem readModem(sd_bus_message& message) {
    Modem modem{.path = readText(message, 'o'), .properties = {}};
    readItems(message, 'a', "{sa{sv}}", [&] {
        readItems(message, 'e', "sa{sv}", [&] {
            const std::string interface = readText(message);
            BusProperties properties = readProperties(message);
            modem.hasMessaging |= interface == messagingInterface;
            if (interface != modemInterface) return;
            modem.isModem = true;
            modem.properties = std::move(properties);
        });
    });
    return modem;
}

/// The number at the end of an object's path, by which the daemon counts; -1 where there is none.
std::int64_t countOf(const std::string& path) {
    const std::string part = lastPart(path);
    std::int64_t count = -1;
    std::from_chars(part.data(), part.data() + part.size(), count);
    return count;
}

bool earlier(const std::string& path, const std::string& other) { return countOf(path) < countOf(other); }

/// Some modems give the offset in whole hours.
std::optional<std::int64_t> timeOf(const std::string& timestamp) {
    for (const char* rest : {"", ":00"})
        if (const auto instant = parseInternetDateTime(timestamp + rest, FractionalSeconds::refused))
            return instant->time_since_epoch().count();
    return std::nullopt;
}

/// The last made first, which orders those without a time.
std::vector<std::string> messagePaths(sd_bus_message& reply) {
    std::vector<std::string> paths;
    readItems(reply, 'a', "o", [&] { paths.push_back(readText(reply, 'o')); });
    std::ranges::sort(paths, [](const std::string& a, const std::string& b) { return earlier(b, a); });
    return paths;
}

} // namespace

std::vector<TextingDevice> ModemManagerTexting::devices(BusConnection& bus, std::chrono::milliseconds patience) {
    const BusObject manager{busName(), "/org/freedesktop/ModemManager1", "org.freedesktop.DBus.ObjectManager"};
    const BusMessage reply = bus.call(manager, "GetManagedObjects", patience);
    std::vector<Modem> modems;
    readItems(*reply, 'a', "{oa{sa{sv}}}",
              [&] { readItems(*reply, 'e', "oa{sa{sv}}", [&] { modems.push_back(readModem(*reply)); }); });
    std::ranges::sort(modems, [](const Modem& a, const Modem& b) { return earlier(a.path, b.path); });
    std::vector<TextingDevice> devices;
    for (const Modem& modem : modems)
        if (mayText(modem)) devices.push_back(deviceOf(modem));
    return devices;
}

std::vector<TextingChat> ModemManagerTexting::chats(BusConnection& bus, const TextingDevice& device) {
    const BusObject messaging{busName(), device.id, messagingInterface};
    const BusMessage reply = bus.call(messaging, "List", patience_.request);
    std::vector<TextingChat> chats;
    for (const std::string& path : messagePaths(*reply)) {
        try {
            const BusProperties sms = bus.properties(messaging.with(path, smsInterface), patience_.request);
            chats.push_back({textOf(sms, "Number"), timeOf(textOf(sms, "Timestamp"))});
        } catch (const BusError& error) {
            if (!error.isAbsence()) throw; // deleted since it was listed
        }
    }
    return chats;
}

void ModemManagerTexting::send(BusConnection& bus, const TextingDevice& device, const MessagesSendQuestion& message) {
    const BusObject messaging{busName(), device.id, messagingInterface};
    const BusMessage reply = bus.call(messaging, "Create", patience_.request, "a{sv}", 2, "number", "s",
                                      message.recipient.c_str(), "text", "s", message.text.c_str());
    const std::string sms = readText(*reply, 'o');
    try {
        bus.call(messaging.with(sms, smsInterface), "Send", patience_.sending);
    } catch (const BusError& failure) {
        // What may still be on its way is left alone; a draft that was refused would be listed as a chat.
        if (failure.isTimeout()) throw;
        try {
            bus.call(messaging, "Delete", patience_.request, "o", sms.c_str());
        } catch (const BusError&) { // the first failure is the one to tell
        }
        throw;
    }
}

} // namespace vesk
