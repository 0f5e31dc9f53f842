#include "VeskPlatform/Linux/Messaging/KdeConnectTexting.hpp"

#include <map>
#include <string_view>

namespace vesk {

namespace {

/// A conversation as the daemon marshals its last message: event, text, addresses, milliseconds since 1970, and seven
/// more fields that nothing here asks for.
constexpr std::string_view messageStart = "(isa(s)x";

void readAddresses(sd_bus_message& message, std::string& numbers) {
    readItems(message, 'a', "(s)", [&] {
        readItems(message, 'r', "s", [&] {
            if (!numbers.empty()) numbers += ',';
            numbers += readText(message);
        });
    });
}

/// `contents` is the signature of the structure.
TextingChat readConversation(sd_bus_message& message, const std::string& contents) {
    const std::string fields = contents.substr(1, contents.size() - 2);
    const std::string rest = contents.substr(messageStart.size(), contents.size() - messageStart.size() - 1);
    TextingChat chat;
    readItems(message, 'r', fields.c_str(), [&] {
        readInteger(message, 'i');
        readText(message);
        readAddresses(message, chat.numbers);
        chat.latest = readInteger(message, 'x');
        if (!rest.empty()) busRequired(sd_bus_message_skip(&message, rest.c_str()));
    });
    return chat;
}

/// `av`. What is no message is passed over.
std::vector<TextingChat> readConversations(sd_bus_message& message) {
    std::vector<TextingChat> chats;
    readItems(message, 'a', "v", [&] {
        const char* signature = nullptr;
        busRequired(sd_bus_message_peek_type(&message, nullptr, &signature));
        const std::string contents(signature == nullptr ? "" : signature);
        if (!contents.starts_with(messageStart)) {
            busRequired(sd_bus_message_skip(&message, "v"));
            return;
        }
        readItems(message, 'v', contents.c_str(), [&] { chats.push_back(readConversation(message, contents)); });
    });
    return chats;
}

/// `a{ss}`, identifiers of devices and their names.
std::map<std::string, std::string> readNames(sd_bus_message& message) {
    std::map<std::string, std::string> names;
    readItems(message, 'a', "{ss}", [&] {
        readItems(message, 'e', "ss", [&] {
            std::string id = readText(message);
            names[std::move(id)] = readText(message);
        });
    });
    return names;
}

bool readTruth(sd_bus_message& message) { return readInteger(message, 'b') != 0; }

} // namespace

BusObject KdeConnectTexting::daemon() const { return {busName(), "/modules/kdeconnect", "org.kde.kdeconnect.daemon"}; }

BusObject KdeConnectTexting::object(const TextingDevice& device, const char* interface) const {
    return daemon().with("/modules/kdeconnect/devices/" + device.id, interface);
}

std::string KdeConnectTexting::obstacleOf(BusConnection& bus, const TextingDevice& device,
                                          std::chrono::milliseconds patience) const {
    const BusMessage reply =
        bus.call(object(device, "org.kde.kdeconnect.device"), "hasPlugin", patience, "s", "kdeconnect_sms");
    return readTruth(*reply) ? "" : "carries no text messages: switch its SMS plugin on in KDE Connect";
}

std::vector<TextingDevice> KdeConnectTexting::devices(BusConnection& bus, std::chrono::milliseconds patience) {
    constexpr int onlyReachable = 1, onlyPaired = 1;
    const BusMessage reply = bus.call(daemon(), "deviceNames", patience, "bb", onlyReachable, onlyPaired);
    std::vector<TextingDevice> devices;
    for (auto& [id, name] : readNames(*reply)) devices.push_back({id, name, ""});
    for (TextingDevice& device : devices) device.obstacle = obstacleOf(bus, device, patience);
    return devices;
}

std::vector<TextingChat> KdeConnectTexting::chats(BusConnection& bus, const TextingDevice& device) {
    const BusObject conversations = object(device, "org.kde.kdeconnect.device.conversations");
    const auto known = [&] {
        const BusMessage reply = bus.call(conversations, "activeConversations", patience_.request);
        return readConversations(*reply);
    };
    if (std::vector<TextingChat> chats = known(); !chats.empty()) return chats;
    bus.awaitSignals(
        conversations, [&] { bus.call(conversations, "requestAllConversationThreads", patience_.request); },
        patience_.firstConversation, patience_.nextConversation);
    return known();
}

void KdeConnectTexting::send(BusConnection& bus, const TextingDevice& device, const MessagesSendQuestion& message) {
    constexpr int recipients = 1, attachments = 0;
    constexpr std::int64_t phonesOwnChoiceOfCard = -1;
    // An address is a structure of one text; a bare text would reach the phone as no address at all.
    const BusObject sms =
        daemon().with("/modules/kdeconnect/devices/" + device.id + "/sms", "org.kde.kdeconnect.device.sms");
    bus.call(sms, "sendSms", patience_.sending, "avsavx", recipients, "(s)", message.recipient.c_str(),
             message.text.c_str(), attachments, phonesOwnChoiceOfCard);
}

} // namespace vesk
