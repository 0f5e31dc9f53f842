#pragma once

#include "tests/support/BusService.hpp"

#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

namespace vesk::test {

struct FakeSms {
    std::string number, text, timestamp;
    bool sent = false;
    /// Listed, and gone when somebody asks for it.
    bool vanished = false;
};

/// As ModemManager shows a modem. States are those of MMModemState: 2 locked, 8 registered …
struct FakeModem {
    std::string manufacturer = "Sierra", model = "EM7455";
    std::int32_t state = 8;
    std::uint32_t failedReason = 0;
    bool messaging = true;
    std::string simPath = "/org/freedesktop/ModemManager1/SIM/4";
    std::vector<FakeSms> messages = {};
};

/// The daemon of modems, with the paths, names and types of its own interfaces. Set up before it serves.
class FakeModemManager : public BusService {
public:
    ~FakeModemManager() override { stop(); }

    std::vector<FakeModem> modems;
    /// Name and message of the error that sending ends with.
    std::optional<std::pair<std::string, std::string>> sendError;

    void serveAt(const std::string& address) { serve(address, "org.freedesktop.ModemManager1"); }
    /// "MODEM NUMBER TEXT" of each message that was sent; what was only created does not count.
    std::vector<std::string> sent() {
        const std::scoped_lock guard(lock_);
        std::vector<std::string> lines;
        for (std::size_t i = 0; i < modems.size(); ++i)
            for (const FakeSms& sms : modems[i].messages)
                if (sms.sent) lines.push_back(std::to_string(i) + " " + sms.number + " " + sms.text);
        return lines;
    }
    std::size_t countOfMessages(std::size_t modem) {
        const std::scoped_lock guard(lock_);
        return modems.at(modem).messages.size();
    }

protected:
    int answer(sd_bus_message& call) override {
        const std::string path = sd_bus_message_get_path(&call);
        if (path == root && is(call, "org.freedesktop.DBus.ObjectManager", "GetManagedObjects"))
            return reply(call, [this](sd_bus_message& message) { writeModems(message); });
        for (std::size_t i = 0; i < modems.size(); ++i) {
            if (path == modemPath(i)) return answerModem(call, i);
            for (std::size_t j = 0; j < modems[i].messages.size(); ++j)
                if (path == smsPath(i, j)) return answerSms(call, i, j);
        }
        return 0;
    }

private:
    static constexpr const char* root = "/org/freedesktop/ModemManager1";
    static constexpr const char* messagingInterface = "org.freedesktop.ModemManager1.Modem.Messaging";
    static constexpr const char* smsInterface = "org.freedesktop.ModemManager1.Sms";

    static std::string modemPath(std::size_t modem) { return std::string(root) + "/Modem/" + std::to_string(modem); }
    static std::string smsPath(std::size_t modem, std::size_t sms) {
        return std::string(root) + "/SMS/" + std::to_string(1000 * modem + sms);
    }

    int answerModem(sd_bus_message& call, std::size_t modem) {
        auto& messages = modems[modem].messages;
        if (is(call, messagingInterface, "List"))
            return reply(call, [&](sd_bus_message& message) {
                sd_bus_message_open_container(&message, 'a', "o");
                for (std::size_t j = 0; j < messages.size(); ++j)
                    sd_bus_message_append(&message, "o", smsPath(modem, j).c_str());
                sd_bus_message_close_container(&message);
            });
        if (is(call, messagingInterface, "Create", "a{sv}")) {
            messages.push_back(readDraft(call));
            return reply(call, [&](sd_bus_message& message) {
                sd_bus_message_append(&message, "o", smsPath(modem, messages.size() - 1).c_str());
            });
        }
        if (is(call, messagingInterface, "Delete", "o")) {
            messages.pop_back();
            return reply(call);
        }
        return 0;
    }

    int answerSms(sd_bus_message& call, std::size_t modem, std::size_t index) {
        FakeSms& sms = modems[modem].messages[index];
        if (sms.vanished) return 0;
        if (is(call, "org.freedesktop.DBus.Properties", "GetAll", "s"))
            return reply(call, [&](sd_bus_message& message) {
                sd_bus_message_append(&message, "a{sv}", 6, "State", "u", sms.sent ? 5U : 3U, "PduType", "u", 1U,
                                      "Number", "s", sms.number.c_str(), "Data", "ay", 0, "Validity", "(uv)", 0U, "u",
                                      0U, "Timestamp", "s", sms.timestamp.c_str());
            });
        if (is(call, smsInterface, "Send")) {
            if (sendError) return fail(call, sendError->first, sendError->second);
            sms.sent = true;
            return reply(call);
        }
        return 0;
    }

    static FakeSms readDraft(sd_bus_message& call) {
        FakeSms sms;
        sd_bus_message_enter_container(&call, 'a', "{sv}");
        while (sd_bus_message_enter_container(&call, 'e', "sv") > 0) {
            const char *key = nullptr, *value = nullptr;
            sd_bus_message_read(&call, "sv", &key, "s", &value);
            (std::string_view(key) == "number" ? sms.number : sms.text) = value;
            sd_bus_message_exit_container(&call);
        }
        return sms;
    }

    void writeModems(sd_bus_message& message) const {
        sd_bus_message_open_container(&message, 'a', "{oa{sa{sv}}}");
        // The daemon's own order is none; the last comes first, to show it.
        for (std::size_t i = modems.size(); i-- > 0;) {
            const FakeModem& modem = modems[i];
            sd_bus_message_open_container(&message, 'e', "oa{sa{sv}}");
            sd_bus_message_append(&message, "o", modemPath(i).c_str());
            sd_bus_message_open_container(&message, 'a', "{sa{sv}}");
            sd_bus_message_append(&message, "{sa{sv}}", "org.freedesktop.ModemManager1.Modem", 7, "Sim", "o",
                                  modem.simPath.c_str(), "Manufacturer", "s", modem.manufacturer.c_str(), "Model", "s",
                                  modem.model.c_str(), "State", "i", modem.state, "StateFailedReason", "u",
                                  modem.failedReason, "UnlockRequired", "u", 1U, "Bearers", "ao", 0);
            if (modem.messaging)
                sd_bus_message_append(&message, "{sa{sv}}", messagingInterface, 1, "DefaultStorage", "u", 2U);
            sd_bus_message_close_container(&message);
            sd_bus_message_close_container(&message);
        }
        sd_bus_message_close_container(&message);
    }
};

} // namespace vesk::test
