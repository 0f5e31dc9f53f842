#include "VeskPlatform/Linux/Secrets/SecretServiceKeychain.hpp"

#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"
#include "VeskPlatform/Linux/Secrets/SecretServiceCalls.hpp"

#include <fstream>
#include <utility>

namespace vesk {
namespace {

constexpr const char* busName = "org.freedesktop.secrets";

bool isName(const std::string& text) { return g_utf8_validate_len(text.data(), text.size(), nullptr) != FALSE; }

/// The session bus; null where there is none.
GobjectOwned<GDBusConnection> sessionBus(GCancellable* limit) {
    GobjectOwned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, limit, nullptr));
    // GLib would end the program when the bus goes.
    if (bus) g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
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

/// The connection that GLib shares for as long as somebody has it.
class SessionBusHold {
public:
    explicit SessionBusHold(GobjectOwned<GDBusConnection> bus) : bus_(std::move(bus)) {}
    GDBusConnection* get() const { return bus_.get(); }

private:
    GobjectOwned<GDBusConnection> bus_;
};

SecretServiceKeychain::SecretServiceKeychain(SecretServiceOptions options) : options_(std::move(options)) {}
SecretServiceKeychain::~SecretServiceKeychain() = default;

SecretServicePresence SecretServiceKeychain::presence() {
    const std::lock_guard guard(lock_);
    const TimeLimit limit(options_.patience);
    const auto isLate = [&] { return g_cancellable_is_cancelled(limit.cancellable()) != FALSE; };
    auto bus = sessionBus(limit.cancellable());
    if (!bus) return isLate() ? SecretServicePresence::unknown : SecretServicePresence::absent;
    try {
        const bool isThere = isOwned(bus.get(), limit.cancellable()) || isActivatable(bus.get(), limit.cancellable());
        if (isThere) bus_ = std::make_unique<SessionBusHold>(std::move(bus));
        return isThere ? SecretServicePresence::present : SecretServicePresence::absent;
    } catch (const KeychainFailure& failure) {
        if (options_.log) options_.log(std::string("secrets: ") + failure.what());
        return SecretServicePresence::unknown;
    }
}

SecretServiceState SecretServiceKeychain::state() {
    SecretServiceState state;
    const TimeLimit limit(options_.patience);
    try {
        const auto bus = sessionBus(limit.cancellable());
        if (!bus || !isOwned(bus.get(), limit.cancellable())) return state; // asking would start it
        state.program = programBehind(bus.get(), limit.cancellable());
        SecretServiceCalls calls(options_);
        const std::string collection = calls.defaultCollection();
        if (!collection.empty()) state.isLocked = calls.isLocked(collection);
    } catch (const KeychainFailure& failure) {
        state.trouble = failure.what();
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

template <class Body> std::int32_t SecretServiceKeychain::run(const Body& body) {
    const std::lock_guard guard(lock_);
    try {
        if (calls_)
            calls_->startClock();
        else
            calls_ = std::make_unique<SecretServiceCalls>(options_);
        return body(*calls_);
    } catch (const KeychainFailure& failure) {
        if (failure.status == KeychainStatus::unavailable) { // the next call reaches for it anew
            calls_.reset();
            bus_.reset();
        }
        if (options_.log) options_.log(std::string("secrets: ") + failure.what());
        return failure.status;
    }
}

} // namespace vesk
