#include "VeskPlatform/Linux/Bus/BusMessage.hpp"

#include <cerrno>
#include <cstring>
#include <string_view>

namespace vesk {

namespace {

template <class Number> std::int64_t readNumber(sd_bus_message& message, char type) {
    Number number{};
    if (busRequired(sd_bus_message_read_basic(&message, type, &number)) == 0) busRequired(-ENXIO);
    return static_cast<std::int64_t>(number);
}

} // namespace

bool BusError::isAbsence() const {
    return domain() == SD_BUS_ERROR_UNKNOWN_OBJECT || domain() == SD_BUS_ERROR_UNKNOWN_METHOD
           || domain() == SD_BUS_ERROR_UNKNOWN_INTERFACE;
}

bool BusError::isTimeout() const { return domain() == SD_BUS_ERROR_TIMEOUT || domain() == SD_BUS_ERROR_NO_REPLY; }

int busRequired(int result) {
    if (result < 0) throw BusError(SD_BUS_ERROR_FAILED, -result, std::string("D-Bus: ") + std::strerror(-result));
    return result;
}

std::string readText(sd_bus_message& message, char type) {
    const char* text = nullptr;
    if (busRequired(sd_bus_message_read_basic(&message, type, &text)) == 0) busRequired(-ENXIO);
    return text;
}

std::int64_t readInteger(sd_bus_message& message, char type) {
    switch (type) {
    case 'y': return readNumber<std::uint8_t>(message, type);
    case 'n': return readNumber<std::int16_t>(message, type);
    case 'q': return readNumber<std::uint16_t>(message, type);
    case 'b':
    case 'i': return readNumber<std::int32_t>(message, type);
    case 'u': return readNumber<std::uint32_t>(message, type);
    default: return readNumber<std::int64_t>(message, type);
    }
}

BusValue readVariant(sd_bus_message& message) {
    char type = 0;
    const char* contents = nullptr;
    busRequired(sd_bus_message_peek_type(&message, &type, &contents));
    const std::string_view kind(contents == nullptr ? "" : contents);
    if (kind.size() != 1 || std::string_view("sobynqiuxt").find(kind.front()) == std::string_view::npos) {
        busRequired(sd_bus_message_skip(&message, "v"));
        return {};
    }
    BusValue value;
    readItems(message, 'v', contents, [&, only = kind.front()] {
        if (only == 's' || only == 'o')
            value = readText(message, only);
        else if (only == 'b')
            value = readInteger(message, only) != 0;
        else
            value = readInteger(message, only);
    });
    return value;
}

BusProperties readProperties(sd_bus_message& message) {
    BusProperties properties;
    readItems(message, 'a', "{sv}", [&] {
        readItems(message, 'e', "sv", [&] {
            std::string name = readText(message);
            properties[std::move(name)] = readVariant(message);
        });
    });
    return properties;
}

void readItems(sd_bus_message& message, char type, const char* contents, const std::function<void()>& readItem) {
    if (busRequired(sd_bus_message_enter_container(&message, type, contents)) == 0) busRequired(-ENXIO);
    while (busRequired(sd_bus_message_at_end(&message, 0)) == 0) readItem();
    busRequired(sd_bus_message_exit_container(&message));
}

std::string textOf(const BusProperties& properties, const std::string& name) {
    const auto found = properties.find(name);
    const auto* text = found == properties.end() ? nullptr : std::get_if<std::string>(&found->second);
    return text == nullptr ? std::string() : *text;
}

std::int64_t integerOf(const BusProperties& properties, const std::string& name, std::int64_t otherwise) {
    const auto found = properties.find(name);
    const auto* number = found == properties.end() ? nullptr : std::get_if<std::int64_t>(&found->second);
    return number == nullptr ? otherwise : *number;
}

} // namespace vesk
