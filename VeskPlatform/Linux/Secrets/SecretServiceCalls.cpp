#include "VeskPlatform/Linux/Secrets/SecretServiceCalls.hpp"

#include "VeskPlatform/Linux/Secrets/KeychainFailure.hpp"

namespace vesk {
namespace {

constexpr const char* busName = "org.freedesktop.secrets";
constexpr const char* servicePath = "/org/freedesktop/secrets";
constexpr const char* defaultAlias = "/org/freedesktop/secrets/aliases/default";
constexpr const char* serviceInterface = "org.freedesktop.Secret.Service";
constexpr const char* collectionInterface = "org.freedesktop.Secret.Collection";
constexpr const char* itemInterface = "org.freedesktop.Secret.Item";

struct ValueRelease {
    void operator()(SecretValue* value) const { secret_value_unref(value); }
};
using OwnedValue = std::unique_ptr<SecretValue, ValueRelease>;

std::int32_t statusOfBusError(int code) {
    switch (code) {
    case G_DBUS_ERROR_ACCESS_DENIED:
    case G_DBUS_ERROR_AUTH_FAILED: return KeychainStatus::denied;
    case G_DBUS_ERROR_SERVICE_UNKNOWN:
    case G_DBUS_ERROR_NAME_HAS_NO_OWNER:
    case G_DBUS_ERROR_NO_REPLY:
    case G_DBUS_ERROR_NO_SERVER:
    case G_DBUS_ERROR_NO_NETWORK:
    case G_DBUS_ERROR_DISCONNECTED:
    case G_DBUS_ERROR_TIMEOUT:
    case G_DBUS_ERROR_TIMED_OUT:
    case G_DBUS_ERROR_SPAWN_EXEC_FAILED:
    case G_DBUS_ERROR_SPAWN_FORK_FAILED:
    case G_DBUS_ERROR_SPAWN_CHILD_EXITED:
    case G_DBUS_ERROR_SPAWN_CHILD_SIGNALED:
    case G_DBUS_ERROR_SPAWN_FAILED: return KeychainStatus::unavailable;
    default: return KeychainStatus::failed;
    }
}

/// What an error means for a keychain.
std::int32_t statusOf(const GError& error) {
    if (error.domain == G_IO_ERROR) return KeychainStatus::unavailable; // the limit, or a connection that broke
    if (error.domain == G_DBUS_ERROR) return statusOfBusError(error.code);
    if (error.domain == SECRET_ERROR && error.code == SECRET_ERROR_IS_LOCKED) return KeychainStatus::locked;
    if (error.domain == SECRET_ERROR && error.code == SECRET_ERROR_NO_SUCH_OBJECT) return KeychainStatus::itemNotFound;
    return KeychainStatus::failed;
}

std::vector<std::string> listed(const GlibOwned<char*>& texts) {
    std::vector<std::string> result;
    for (char** text = texts.get(); text != nullptr && *text != nullptr; ++text) result.emplace_back(*text);
    return result;
}

GlibOwned<GHashTable> tableOf(const ItemAttributes& attributes) {
    GlibOwned<GHashTable> table(g_hash_table_new_full(g_str_hash, g_str_equal, nullptr, g_free));
    const auto insert = [&](const char* key, const std::string& value) {
        g_hash_table_insert(table.get(), const_cast<char*>(key), g_strdup(value.c_str()));
    };
    insert("service", attributes.service);
    if (attributes.account) insert("account", *attributes.account);
    return table;
}

/// The properties of a new item; people see the label in their keyring program.
GVariant* propertiesOf(const ItemAttributes& attributes) {
    const std::string account = attributes.account.value_or("");
    GVariantBuilder pairs;
    g_variant_builder_init(&pairs, G_VARIANT_TYPE("a{ss}"));
    g_variant_builder_add(&pairs, "{ss}", "service", attributes.service.c_str());
    g_variant_builder_add(&pairs, "{ss}", "account", account.c_str());
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
    const std::string label = attributes.service + ": " + account;
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Item.Label",
                          g_variant_new_string(label.c_str()));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Item.Attributes", g_variant_builder_end(&pairs));
    return g_variant_builder_end(&properties);
}

GVariant* pathList(const std::vector<std::string>& paths) {
    GVariantBuilder list;
    g_variant_builder_init(&list, G_VARIANT_TYPE("ao"));
    for (const std::string& path : paths) g_variant_builder_add(&list, "o", path.c_str());
    return g_variant_builder_end(&list);
}

std::string lastPath(GVariant* reply) {
    const char* path = nullptr;
    g_variant_get_child(reply, g_variant_n_children(reply) - 1, "&o", &path);
    return path;
}

/// What a question whether to unlock, to make and to remove ends with where the user agreed.
bool namesObjects(GVariant* result) {
    return g_variant_is_of_type(result, G_VARIANT_TYPE_OBJECT_PATH_ARRAY) && g_variant_n_children(result) > 0;
}
bool namesObject(GVariant* result) {
    return g_variant_is_of_type(result, G_VARIANT_TYPE_OBJECT_PATH)
           && std::string_view(g_variant_get_string(result, nullptr)) != "/";
}
bool isAnything(GVariant*) { return true; }

} // namespace

void throwKeychainFailure(const GError* error, const std::string& what) {
    if (error == nullptr) throw KeychainFailure(KeychainStatus::failed, what + " failed.");
    throw KeychainFailure(statusOf(*error), what + " failed: " + g_quark_to_string(error->domain) + " "
                                                + std::to_string(error->code) + ".");
}

SecretServiceCalls::SecretServiceCalls(const SecretServiceOptions& options) : options_(options) {
    startClock();
    GlibError error;
    // As secret_service_open_sync does it, less properties and signals that nobody here looks at: two waits fewer.
    const auto flags = static_cast<GDBusProxyFlags>(G_DBUS_PROXY_FLAGS_DO_NOT_LOAD_PROPERTIES
                                                    | G_DBUS_PROXY_FLAGS_DO_NOT_CONNECT_SIGNALS);
    service_.reset(static_cast<::SecretService*>(g_initable_new(
        SECRET_TYPE_SERVICE, limit(), &error, "g-flags", flags, "g-name", busName, "g-bus-type", G_BUS_TYPE_SESSION,
        "g-object-path", servicePath, "g-interface-name", serviceInterface, "flags", SECRET_SERVICE_NONE, nullptr)));
    if (!service_) throwKeychainFailure(error.get(), "Reaching the Secret Service");
}

void SecretServiceCalls::startClock() { limit_ = std::make_unique<TimeLimit>(options_.patience); }

bool SecretServiceCalls::isServed() const {
    const GlibOwned<char> owner(g_dbus_proxy_get_name_owner(G_DBUS_PROXY(service_.get())));
    return owner != nullptr;
}

FoundItems SecretServiceCalls::search(const ItemAttributes& attributes) {
    const auto table = tableOf(attributes);
    char** unlocked = nullptr;
    char** locked = nullptr;
    GlibError error;
    const bool isFound = secret_service_search_for_dbus_paths_sync(service_.get(), nullptr, table.get(), limit(),
                                                                   &unlocked, &locked, &error)
                         != FALSE;
    const GlibOwned<char*> ownedUnlocked(unlocked), ownedLocked(locked);
    if (!isFound) throwKeychainFailure(error.get(), "Searching the Secret Service");
    return {listed(ownedUnlocked), listed(ownedLocked)};
}

void SecretServiceCalls::unlock(const std::vector<std::string>& paths) {
    const auto reply = call(servicePath, serviceInterface, "Unlock", g_variant_new("(@ao)", pathList(paths)), "(aoo)");
    answerPrompt(lastPath(reply.get()), namesObjects);
}

std::string SecretServiceCalls::secret(const std::string& item) {
    GlibError error;
    const OwnedValue value(secret_service_get_secret_for_dbus_path_sync(service_.get(), item.c_str(), limit(), &error));
    if (!value) throwKeychainFailure(error.get(), "Reading a secret");
    gsize length = 0;
    const char* bytes = secret_value_get(value.get(), &length);
    return bytes == nullptr ? std::string() : std::string(bytes, length);
}

void SecretServiceCalls::setSecret(const std::string& item, std::string_view bytes) {
    call(item, itemInterface, "SetSecret", g_variant_new("(@(oayays))", encoded(bytes).get()), "()");
}

void SecretServiceCalls::create(const ItemAttributes& attributes, std::string_view bytes) {
    try {
        createIn(defaultAlias, attributes, bytes);
        return;
    } catch (const KeychainFailure& failure) {
        if (failure.status != KeychainStatus::locked && failure.status != KeychainStatus::itemNotFound) throw;
    }
    std::string collection = defaultCollection();
    if (collection.empty()) collection = makeDefaultCollection();
    if (isLocked(collection)) unlock({collection});
    createIn(collection, attributes, bytes);
}

void SecretServiceCalls::createIn(const std::string& collection, const ItemAttributes& attributes,
                                  std::string_view bytes) {
    // Of two processes that add the same at once, the second replaces: the service would keep both otherwise.
    const auto reply =
        call(collection, collectionInterface, "CreateItem",
             g_variant_new("(@a{sv}@(oayays)b)", propertiesOf(attributes), encoded(bytes).get(), TRUE), "(oo)");
    answerPrompt(lastPath(reply.get()), namesObject);
}

bool SecretServiceCalls::remove(const std::string& item) {
    const auto reply = call(item, itemInterface, "Delete", nullptr, "(o)");
    const std::string prompt = lastPath(reply.get());
    answerPrompt(prompt, isAnything);
    return prompt != "/";
}

std::string SecretServiceCalls::defaultCollection() {
    const auto reply = call(servicePath, serviceInterface, "ReadAlias", g_variant_new("(s)", "default"), "(o)");
    const std::string path = lastPath(reply.get());
    return path == "/" ? std::string() : path;
}

bool SecretServiceCalls::isLocked(const std::string& collection) {
    const auto reply = call(collection, "org.freedesktop.DBus.Properties", "Get",
                            g_variant_new("(ss)", collectionInterface, "Locked"), "(v)");
    GVariant* held = nullptr;
    g_variant_get(reply.get(), "(v)", &held);
    const GlibOwned<GVariant> value(held);
    if (!g_variant_is_of_type(held, G_VARIANT_TYPE_BOOLEAN))
        throw KeychainFailure(KeychainStatus::failed, "The Secret Service does not tell whether it is locked.");
    return g_variant_get_boolean(held) != FALSE;
}

std::string SecretServiceCalls::makeDefaultCollection() {
    GVariantBuilder properties;
    g_variant_builder_init(&properties, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&properties, "{sv}", "org.freedesktop.Secret.Collection.Label",
                          g_variant_new_string("Default keyring"));
    const auto reply = call(servicePath, serviceInterface, "CreateCollection",
                            g_variant_new("(@a{sv}s)", g_variant_builder_end(&properties), "default"), "(oo)");
    answerPrompt(lastPath(reply.get()), namesObject);
    std::string made = defaultCollection();
    if (made.empty()) throw KeychainFailure(KeychainStatus::failed, "The Secret Service made no collection.");
    return made;
}

GlibOwned<GVariant> SecretServiceCalls::call(const std::string& path, const char* interface, const char* method,
                                             GVariant* arguments, const char* replyType) {
    GlibError error;
    GVariant* reply = g_dbus_connection_call_sync(g_dbus_proxy_get_connection(G_DBUS_PROXY(service_.get())), busName,
                                                  path.c_str(), interface, method, arguments, G_VARIANT_TYPE(replyType),
                                                  G_DBUS_CALL_FLAGS_NONE, -1, limit(), &error);
    if (reply == nullptr) throwKeychainFailure(error.get(), std::string("The call ") + method);
    return GlibOwned<GVariant>(reply);
}

GlibOwned<GVariant> SecretServiceCalls::encoded(std::string_view bytes) {
    GlibError error;
    if (secret_service_ensure_session_sync(service_.get(), limit(), &error) == FALSE)
        throwKeychainFailure(error.get(), "Opening a session");
    const auto length = static_cast<gssize>(bytes.size());
    const bool isText = g_utf8_validate_len(bytes.data(), bytes.size(), nullptr) != FALSE;
    const OwnedValue value(secret_value_new(bytes.empty() ? "" : bytes.data(), length,
                                            isText ? "text/plain" : "application/octet-stream"));
    GVariant* secret = secret_service_encode_dbus_secret(service_.get(), value.get());
    if (secret == nullptr) throw KeychainFailure(KeychainStatus::failed, "A secret cannot be sent.");
    return GlibOwned<GVariant>(g_variant_take_ref(secret));
}

void SecretServiceCalls::answerPrompt(const std::string& prompt, bool (*isGranted)(GVariant* result)) {
    if (prompt == "/") return;
    if (!options_.canPrompt || !options_.canPrompt()) {
        dismiss(prompt);
        throw KeychainFailure(KeychainStatus::locked, "The Secret Service is locked and nobody can be asked.");
    }
    const TimeLimit questionLimit(options_.promptPatience);
    GlibError error;
    const GlibOwned<GVariant> result(secret_service_prompt_at_dbus_path_sync(
        service_.get(), prompt.c_str(), questionLimit.cancellable(), nullptr, &error));
    startClock(); // the user's time is not the service's
    if (result && isGranted(result.get())) return;
    if (g_cancellable_is_cancelled(questionLimit.cancellable()) != FALSE)
        throw KeychainFailure(KeychainStatus::locked, "The Secret Service was not unlocked in time.");
    if (error.get() != nullptr) throwKeychainFailure(error.get(), "Asking to unlock the Secret Service");
    throw KeychainFailure(KeychainStatus::denied, "The question of the Secret Service was dismissed.");
}

void SecretServiceCalls::dismiss(const std::string& prompt) {
    try {
        call(prompt, "org.freedesktop.Secret.Prompt", "Dismiss", nullptr, "()");
    } catch (const KeychainFailure&) { // it goes with the connection
    }
}

} // namespace vesk
