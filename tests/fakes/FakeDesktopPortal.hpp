#pragma once

#include "VeskPlatform/Linux/Bus/BusMessage.hpp"
#include "tests/support/BusService.hpp"

#include <algorithm>
#include <cstdint>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace vesk::test {

struct FakeStream {
    std::uint32_t node = 0;
    std::optional<std::pair<std::int32_t, std::int32_t>> position, size;
};

/// The desktop's portals with a user behind them, with the paths, names and types of their own interfaces. Set up
/// before it serves.
class FakeDesktopPortal : public BusService {
public:
    ~FakeDesktopPortal() override { stop(); }

    std::set<std::string> portals{"Screenshot", "RemoteDesktop", "ScreenCast"};
    /// What comes of a method, as the portals number it: 0 granted, 1 refused by the user; none where nobody decides.
    std::map<std::string, std::optional<std::uint32_t>> outcomes;
    bool respondsBeforeItAnswers = false;
    /// As portals did before requests had a token.
    bool namesRequestsItself = false;

    std::string screenshotUri;
    std::uint32_t devices = 3;
    std::vector<FakeStream> streams;
    std::string restoreToken;
    /// Whether the user has ended the session.
    bool isSessionEnded = false;

    void serveAt(const std::string& address) { serve(address, "org.freedesktop.portal.Desktop"); }
    /// Each call: the method, then its options in their order or its other arguments. Tokens of requests and sessions
    /// are left out.
    std::vector<std::string> calls() {
        const std::scoped_lock guard(lock_);
        return calls_;
    }

protected:
    int answer(sd_bus_message& call) override {
        const std::string method = sd_bus_message_get_member(&call);
        const std::string interface = sd_bus_message_get_interface(&call);
        if (interface == prefix + "Session" && method == "Close") return noted(call, "Close session");
        if (interface == prefix + "Request" && method == "Close") return noted(call, "Close request");
        if (sd_bus_message_get_path(&call) != std::string("/org/freedesktop/portal/desktop")) return 0;
        if (interface == "org.freedesktop.DBus.Properties" && method == "GetAll") return answerProperties(call);
        if (!interface.starts_with(prefix) || !portals.contains(interface.substr(prefix.size()))) return 0;
        if (method.starts_with("Notify")) return answerInput(call, method);
        static const std::map<std::string, std::string> requests{{"Screenshot", "s"},
                                                                 {"CreateSession", ""},
                                                                 {"SelectDevices", "o"},
                                                                 {"SelectSources", "o"},
                                                                 {"Start", "os"}};
        const auto found = requests.find(method);
        return found == requests.end() ? 0 : answerRequest(call, method, found->second);
    }

private:
    inline static const std::string prefix = "org.freedesktop.portal.";

    int noted(sd_bus_message& call, const std::string& line) {
        calls_.push_back(line);
        return reply(call);
    }

    int answerProperties(sd_bus_message& call) {
        const std::string asked = readText(call);
        if (!asked.starts_with(prefix) || !portals.contains(asked.substr(prefix.size())))
            return fail(call, "org.freedesktop.DBus.Error.InvalidArgs", "No such interface “" + asked + "”");
        return reply(call,
                     [](sd_bus_message& message) { sd_bus_message_append(&message, "a{sv}", 1, "version", "u", 2U); });
    }

    int answerInput(sd_bus_message& call, const std::string& method) {
        const std::string session = readText(call, 'o');
        if (isSessionEnded || session != session_)
            return fail(call, "org.freedesktop.DBus.Error.AccessDenied", "Invalid session");
        readProperties(call);
        std::string line = method;
        const std::string types = sd_bus_message_get_signature(&call, 1);
        for (const char type : types.substr(std::string("oa{sv}").size())) {
            double number = 0;
            if (type == 'd')
                sd_bus_message_read_basic(&call, type, &number);
            else
                number = static_cast<double>(readInteger(call, type));
            line += " " + std::to_string(number);
            line.erase(line.find_last_not_of('0') + 1);
            if (line.ends_with('.')) line.pop_back();
        }
        return noted(call, line);
    }

    int answerRequest(sd_bus_message& call, const std::string& method, const std::string& arguments) {
        for (const char type : arguments)
            if (const std::string text = readText(call, type); type == 'o' && text != session_)
                return fail(call, "org.freedesktop.DBus.Error.AccessDenied", "Invalid session");
        BusProperties options = readProperties(call);
        const std::string token = take(options, "handle_token");
        if (!tokens_.insert(token).second) return fail(call, "org.freedesktop.DBus.Error.Failed", "Used before");
        const std::string handle = pathOf(call, "request", namesRequestsItself ? "t0" : token);
        if (method == "CreateSession") session_ = pathOf(call, "session", take(options, "session_handle_token"));
        calls_.push_back(method + described(options));

        const auto outcome = outcomes.contains(method) ? outcomes[method] : std::optional<std::uint32_t>(0);
        if (outcome && respondsBeforeItAnswers) respond(call, handle, method, *outcome);
        const int sent =
            reply(call, [&](sd_bus_message& message) { sd_bus_message_append(&message, "o", handle.c_str()); });
        if (outcome && !respondsBeforeItAnswers) respond(call, handle, method, *outcome);
        return sent;
    }

    static std::string take(BusProperties& options, const std::string& name) {
        const std::string text = textOf(options, name);
        options.erase(name);
        return text;
    }

    static std::string pathOf(sd_bus_message& call, const std::string& kind, const std::string& token) {
        std::string sender = std::string(sd_bus_message_get_sender(&call)).substr(1);
        std::ranges::replace(sender, '.', '_');
        return "/org/freedesktop/portal/desktop/" + kind + "/" + sender + "/" + token;
    }

    static std::string described(const BusProperties& options) {
        std::string line;
        for (const auto& [name, value] : options) {
            line += " " + name + "=";
            if (const auto* text = std::get_if<std::string>(&value)) line += *text;
            if (const auto* number = std::get_if<std::int64_t>(&value)) line += std::to_string(*number);
            if (const auto* flag = std::get_if<bool>(&value)) line += *flag ? "true" : "false";
        }
        return line;
    }

    void respond(sd_bus_message& call, const std::string& handle, const std::string& method, std::uint32_t outcome) {
        sd_bus_message* signal = nullptr;
        sd_bus_message_new_signal(sd_bus_message_get_bus(&call), &signal, handle.c_str(),
                                  "org.freedesktop.portal.Request", "Response");
        sd_bus_message_set_destination(signal, sd_bus_message_get_sender(&call));
        sd_bus_message_append(signal, "u", outcome);
        sd_bus_message_open_container(signal, 'a', "{sv}");
        if (outcome == 0) writeResults(*signal, method);
        sd_bus_message_close_container(signal);
        sd_bus_send(nullptr, signal, nullptr);
        sd_bus_message_unref(signal);
    }

    void writeResults(sd_bus_message& signal, const std::string& method) {
        if (method == "Screenshot") sd_bus_message_append(&signal, "{sv}", "uri", "s", screenshotUri.c_str());
        if (method == "CreateSession") sd_bus_message_append(&signal, "{sv}", "session_handle", "s", session_.c_str());
        if (method != "Start") return;
        sd_bus_message_append(&signal, "{sv}", "devices", "u", devices);
        if (!restoreToken.empty()) sd_bus_message_append(&signal, "{sv}", "restore_token", "s", restoreToken.c_str());
        if (!streams.empty()) writeStreams(signal);
    }

    void writeStreams(sd_bus_message& signal) {
        sd_bus_message_open_container(&signal, 'e', "sv");
        sd_bus_message_append(&signal, "s", "streams");
        sd_bus_message_open_container(&signal, 'v', "a(ua{sv})");
        sd_bus_message_open_container(&signal, 'a', "(ua{sv})");
        for (const FakeStream& stream : streams) {
            sd_bus_message_open_container(&signal, 'r', "ua{sv}");
            sd_bus_message_append(&signal, "u", stream.node);
            sd_bus_message_open_container(&signal, 'a', "{sv}");
            sd_bus_message_append(&signal, "{sv}", "source_type", "u", 1U);
            for (const auto& [name, pair] : {std::pair{"position", stream.position}, std::pair{"size", stream.size}})
                if (pair) sd_bus_message_append(&signal, "{sv}", name, "(ii)", pair->first, pair->second);
            for (int i = 0; i < 2; ++i) sd_bus_message_close_container(&signal);
        }
        for (int i = 0; i < 3; ++i) sd_bus_message_close_container(&signal);
    }

    std::vector<std::string> calls_;
    std::set<std::string> tokens_;
    std::string session_;
};

} // namespace vesk::test
