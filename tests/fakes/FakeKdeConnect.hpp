#pragma once

#include "tests/support/BusService.hpp"

#include <cstdint>
#include <vector>

namespace vesk::test {

struct FakeConversation {
    std::vector<std::string> addresses;
    std::int64_t date = 0;
};

struct FakePhone {
    std::string id, name;
    bool reachable = true, paired = true, smsPlugin = true;
    /// What the daemon knows, and what the phone tells it when it is asked.
    std::vector<FakeConversation> known = {}, onThePhone = {};
};

/// The daemon of paired phones, with the paths, names and types of its own interfaces. Set up before it serves.
class FakeKdeConnect : public BusService {
public:
    ~FakeKdeConnect() override { stop(); }

    std::vector<FakePhone> phones;

    void serveAt(const std::string& address) { serve(address, "org.kde.kdeconnect"); }
    /// "PHONE ADDRESS… TEXT" of each message that was sent.
    std::vector<std::string> sent() {
        const std::scoped_lock guard(lock_);
        return sent_;
    }

protected:
    int answer(sd_bus_message& call) override {
        const std::string path = sd_bus_message_get_path(&call), root = "/modules/kdeconnect";
        if (path == root && is(call, "org.kde.kdeconnect.daemon", "deviceNames", "bb")) return answerNames(call);
        for (FakePhone& phone : phones) {
            const std::string device = root + "/devices/" + phone.id;
            if (path == device) return answerDevice(call, phone);
            if (path == device + "/sms" && phone.smsPlugin
                && is(call, "org.kde.kdeconnect.device.sms", "sendSms", "avsavx"))
                return answerSend(call, phone);
        }
        return 0;
    }

private:
    static constexpr const char* conversations = "org.kde.kdeconnect.device.conversations";

    int answerNames(sd_bus_message& call) {
        int onlyReachable = 0, onlyPaired = 0;
        sd_bus_message_read(&call, "bb", &onlyReachable, &onlyPaired);
        return reply(call, [&](sd_bus_message& message) {
            sd_bus_message_open_container(&message, 'a', "{ss}");
            for (const FakePhone& phone : phones)
                if ((onlyReachable == 0 || phone.reachable) && (onlyPaired == 0 || phone.paired))
                    sd_bus_message_append(&message, "{ss}", phone.id.c_str(), phone.name.c_str());
            sd_bus_message_close_container(&message);
        });
    }

    int answerDevice(sd_bus_message& call, FakePhone& phone) {
        if (is(call, "org.kde.kdeconnect.device", "hasPlugin", "s")) {
            const char* plugin = nullptr;
            sd_bus_message_read(&call, "s", &plugin);
            const bool has = phone.smsPlugin && std::string_view(plugin) == "kdeconnect_sms";
            return reply(call, [&](sd_bus_message& message) { sd_bus_message_append(&message, "b", has ? 1 : 0); });
        }
        if (is(call, conversations, "activeConversations"))
            return reply(call, [&](sd_bus_message& message) {
                sd_bus_message_open_container(&message, 'a', "v");
                sd_bus_message_append(&message, "v", "s", "no message");
                for (const FakeConversation& conversation : phone.known) write(message, conversation);
                sd_bus_message_close_container(&message);
            });
        if (is(call, conversations, "requestAllConversationThreads")) {
            reply(call);
            // They come one after the other, as the phone sends them.
            for (const FakeConversation& conversation : phone.onThePhone) {
                phone.known.push_back(conversation);
                announce(call, conversation);
            }
            return 1;
        }
        return 0;
    }

    int answerSend(sd_bus_message& call, const FakePhone& phone) {
        std::string line = phone.id;
        sd_bus_message_enter_container(&call, 'a', "v");
        // An address that is no structure of a text counts as none.
        const char *contents = nullptr, *text = nullptr;
        while (sd_bus_message_peek_type(&call, nullptr, &contents) > 0) {
            if (std::string_view(contents) != "(s)") {
                sd_bus_message_skip(&call, "v");
                continue;
            }
            sd_bus_message_read(&call, "v", "(s)", &text);
            line += std::string(" ") + text;
        }
        sd_bus_message_exit_container(&call);
        sd_bus_message_read(&call, "s", &text);
        sent_.push_back(line + " " + text);
        return reply(call);
    }

    static void announce(sd_bus_message& call, const FakeConversation& conversation) {
        sd_bus_message* signal = nullptr;
        sd_bus_message_new_signal(sd_bus_message_get_bus(&call), &signal, sd_bus_message_get_path(&call), conversations,
                                  "conversationCreated");
        write(*signal, conversation);
        sd_bus_send(nullptr, signal, nullptr);
        sd_bus_message_unref(signal);
    }

    static void write(sd_bus_message& message, const FakeConversation& conversation) {
        sd_bus_message_open_container(&message, 'v', "(isa(s)xiixixa(xsss))");
        sd_bus_message_open_container(&message, 'r', "isa(s)xiixixa(xsss)");
        sd_bus_message_append(&message, "is", 1, "The last text");
        sd_bus_message_open_container(&message, 'a', "(s)");
        for (const std::string& address : conversation.addresses)
            sd_bus_message_append(&message, "(s)", address.c_str());
        sd_bus_message_close_container(&message);
        sd_bus_message_append(&message, "xiixixa(xsss)", conversation.date, 1, 1, std::int64_t{7}, 3, std::int64_t{-1},
                              0);
        sd_bus_message_close_container(&message);
        sd_bus_message_close_container(&message);
    }

    std::vector<std::string> sent_;
};

} // namespace vesk::test
