#include "VeskPlatform/Linux/Secrets/SecretServiceKeychain.hpp"

#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"
#include "VeskPlatform/Linux/Secrets/SecretServiceCalls.hpp"

#include <fstream>
#include <optional>
#include <utility>

namespace vesk {
namespace {

constexpr const char* busName = "org.freedesktop.secrets";

bool isName(const std::string& text) { return g_utf8_validate_len(text.data(), text.size(), nullptr) != FALSE; }

/// The connection that GLib and libsecret share; null where there is no session bus.
GobjectOwned<GDBusConnection> sessionBus(GCancellable* limit) {
    GobjectOwned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, limit, nullptr));
    if (bus) g_dbus_connection_set_exit_on_close(bus.get(), FALSE); // GLib would end the program when the bus goes
    return bus;
}

GlibOwned<GVariant> askBus(GDBusConnection* bus, const char* method, const char* name, const char* replyType,
                           GCancellable* limit) {
    GlibError error;
    GVariant* reply =
        g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                                    method, name != nullptr ? g_variant_new("(s)", name) : nullptr,
                                    G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE, -1, limit, &error);
    if (reply == nullptr) throwKeychainFailure(error.get(), std::string("Asking the bus for ") + method);
    return GlibOwned<GVariant>(reply);
}

bool isOwned(GDBusConnection* bus, GCancellable* limit) {
    gboolean isThere = FALSE;
    g_variant_get(askBus(bus, "NameHasOwner", busName, "(b)", limit).get(), "(b)", &isThere);
    return isThere != FALSE;
}

bool isActivatable(GDBusConnection* bus, GCancellable* limit) {
    const auto reply = askBus(bus, "ListActivatableNames", nullptr, "(as)", limit);
    const GlibOwned<GVariant> names(g_variant_get_child_value(reply.get(), 0));
    gsize count = 0;
    const char** texts = g_variant_get_strv(names.get(), &count);
    bool isThere = false;
    for (gsize i = 0; i < count; ++i) isThere = isThere || std::string_view(texts[i]) == busName;
    g_free(texts);
    return isThere;
}

/// The name of the process behind the service, as the system has it (proc(5)).
std::string programBehind(GDBusConnection* bus, GCancellable* limit) {
    guint32 process = 0;
    g_variant_get(askBus(bus, "GetConnectionUnixProcessID", busName, "(u)", limit).get(), "(u)", &process);
    std::ifstream file("/proc/" + std::to_string(process) + "/comm");
    std::string name;
    std::getline(file, name);
    return name;
}

/// The item of an account: an unlocked one, else a locked one once it is unlocked; empty where there is none.
std::string openedItem(SecretServiceCalls& calls, const ItemAttributes& attributes) {
    const FoundItems found = calls.search(attributes);
    if (!found.unlocked.empty()) return found.unlocked.front();
    if (found.locked.empty()) return {};
    calls.unlock({found.locked.front()});
    return found.locked.front();
}

std::int32_t removeMatching(SecretServiceCalls& calls, const ItemAttributes& attributes) {
    const FoundItems found = calls.search(attributes);
    if (found.empty()) return KeychainStatus::itemNotFound;
    if (!found.locked.empty()) calls.unlock(found.locked);
    bool wasAsked = false;
    for (const auto* paths : {&found.unlocked, &found.locked})
        for (const std::string& path : *paths) wasAsked = calls.remove(path) || wasAsked;
    if (wasAsked && !calls.search(attributes).empty())
        throw KeychainFailure(KeychainStatus::denied, "The question of the Secret Service was dismissed.");
    return KeychainStatus::success;
}

} // namespace

/// A connection, and the calls over it once there are any.
class SecretServiceLink {
public:
    explicit SecretServiceLink(GobjectOwned<GDBusConnection> bus) : bus_(std::move(bus)) {}
    /// What is to be told about the connection later holds on to it, and GLib hands it out for as long as somebody
    /// does, closed or not. In a program without GLib's loop nobody else lets go of that.
    ~SecretServiceLink() {
        calls_.reset();
        bus_.reset();
        for (int left = 100; left > 0 && g_main_context_iteration(nullptr, FALSE) != FALSE; --left) {
        }
    }
    SecretServiceLink(const SecretServiceLink&) = delete;
    SecretServiceLink& operator=(const SecretServiceLink&) = delete;

    GDBusConnection* bus() const { return bus_.get(); }
    /// With the whole of their time.
    SecretServiceCalls& calls(const SecretServiceOptions& options) {
        if (calls_)
            calls_->startClock();
        else
            calls_.emplace(options);
        return *calls_;
    }

private:
    GobjectOwned<GDBusConnection> bus_;
    std::optional<SecretServiceCalls> calls_;
};

SecretServiceKeychain::SecretServiceKeychain(SecretServiceOptions options) : options_(std::move(options)) {}
SecretServiceKeychain::~SecretServiceKeychain() = default;

SecretServicePresence SecretServiceKeychain::presence() {
    const std::lock_guard guard(lock_);
    const TimeLimit limit(options_.patience);
    auto bus = sessionBus(limit.cancellable());
    const bool isLate = g_cancellable_is_cancelled(limit.cancellable()) != FALSE;
    if (!bus) return isLate ? SecretServicePresence::unknown : SecretServicePresence::absent;
    try {
        if (!isOwned(bus.get(), limit.cancellable()) && !isActivatable(bus.get(), limit.cancellable()))
            return SecretServicePresence::absent;
    } catch (const KeychainFailure& failure) {
        if (options_.log) options_.log(std::string("secrets: ") + failure.what());
        return SecretServicePresence::unknown;
    }
    return SecretServicePresence::present;
}

SecretServicePresence SecretServiceKeychain::reach() {
    const auto end = std::chrono::steady_clock::now() + options_.patience;
    {
        const std::lock_guard guard(lock_);
        try {
            if (link().calls(options_).isServed()) return SecretServicePresence::present;
        } catch (const KeychainFailure&) { // no bus, or nobody who could be started on it: told apart below
        }
        link_.reset();
    }
    return std::chrono::steady_clock::now() < end ? presence() : SecretServicePresence::unknown;
}

SecretServiceState SecretServiceKeychain::state() {
    const std::lock_guard guard(lock_);
    SecretServiceState state;
    try {
        const TimeLimit limit(options_.patience);
        SecretServiceLink& used = link();
        if (!isOwned(used.bus(), limit.cancellable())) return state; // asking would start it
        state.program = programBehind(used.bus(), limit.cancellable());
        SecretServiceCalls& calls = used.calls(options_);
        const std::string collection = calls.defaultCollection();
        if (!collection.empty()) state.isLocked = calls.isLocked(collection);
    } catch (const KeychainFailure& failure) {
        state.trouble = failure.what();
        link_.reset();
    }
    return state;
}

std::int32_t SecretServiceKeychain::update(const std::string& service, const std::string& account,
                                           std::string_view bytes) {
    if (!isName(service) || !isName(account)) return KeychainStatus::parameter;
    return run([&](SecretServiceCalls& calls) {
        const std::string item = openedItem(calls, {service, account});
        if (item.empty()) return KeychainStatus::itemNotFound;
        calls.setSecret(item, bytes);
        return KeychainStatus::success;
    });
}

std::int32_t SecretServiceKeychain::add(const std::string& service, const std::string& account,
                                        std::string_view bytes) {
    if (!isName(service) || !isName(account)) return KeychainStatus::parameter;
    return run([&](SecretServiceCalls& calls) {
        if (!calls.search({service, account}).empty()) return KeychainStatus::duplicateItem;
        calls.create({service, account}, bytes);
        return KeychainStatus::success;
    });
}

KeychainItems::Copied SecretServiceKeychain::copy(const std::string& service, const std::string& account) {
    if (!isName(service) || !isName(account)) return {KeychainStatus::parameter, std::nullopt};
    Copied copied;
    copied.status = run([&](SecretServiceCalls& calls) {
        const std::string item = openedItem(calls, {service, account});
        if (item.empty()) return KeychainStatus::itemNotFound;
        copied.bytes = calls.secret(item);
        return KeychainStatus::success;
    });
    return copied;
}

std::int32_t SecretServiceKeychain::find(const std::string& service, const std::string& account) {
    if (!isName(service) || !isName(account)) return KeychainStatus::parameter;
    return run([&](SecretServiceCalls& calls) {
        return calls.search({service, account}).empty() ? KeychainStatus::itemNotFound : KeychainStatus::success;
    });
}

std::int32_t SecretServiceKeychain::remove(const std::string& service, const std::string& account) {
    if (!isName(service) || !isName(account)) return KeychainStatus::parameter;
    return run([&](SecretServiceCalls& calls) { return removeMatching(calls, {service, account}); });
}

std::int32_t SecretServiceKeychain::removeAll(const std::string& service) {
    if (!isName(service)) return KeychainStatus::parameter;
    return run([&](SecretServiceCalls& calls) { return removeMatching(calls, {service, std::nullopt}); });
}

SecretServiceLink& SecretServiceKeychain::link() {
    if (!link_) {
        const TimeLimit limit(options_.patience);
        auto bus = sessionBus(limit.cancellable());
        if (!bus) throw KeychainFailure(KeychainStatus::unavailable, "The session bus cannot be reached.");
        link_ = std::make_unique<SecretServiceLink>(std::move(bus));
    }
    return *link_;
}

template <class Body> std::int32_t SecretServiceKeychain::run(const Body& body) {
    const std::lock_guard guard(lock_);
    try {
        return body(link().calls(options_));
    } catch (const KeychainFailure& failure) {
        if (failure.status == KeychainStatus::unavailable) link_.reset(); // the next call reaches for it anew
        if (options_.log) options_.log(std::string("secrets: ") + failure.what());
        return failure.status;
    }
}

} // namespace vesk
