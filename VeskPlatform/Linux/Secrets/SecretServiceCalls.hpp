#pragma once

#include "VeskPlatform/Linux/Secrets/GlibObjects.hpp"
#include "VeskPlatform/Linux/Secrets/SecretService.hpp"

#include <libsecret/secret.h>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

/// Object paths of items.
struct FoundItems {
    std::vector<std::string> unlocked, locked;

    bool empty() const { return unlocked.empty() && locked.empty(); }
};

struct ItemAttributes {
    std::string service;
    /// None for all items of the service.
    std::optional<std::string> account;
};

/// The calls of the Secret Service over one connection to its bus, all within one limit of time. Each throws
/// KeychainFailure: `unavailable` past its limit, `locked` where the user could not be asked or did not answer,
/// `denied` where they dismissed the question.
class SecretServiceCalls {
public:
    /// Starts the service where it is not running.
    explicit SecretServiceCalls(const SecretServiceOptions& options);

    /// From now on the calls have the whole of their time.
    void startClock();
    /// Whether somebody has the service's name on the bus.
    bool isServed() const;
    FoundItems search(const ItemAttributes& attributes);
    /// Asks the user where that takes a question.
    void unlock(const std::vector<std::string>& paths);
    std::string secret(const std::string& item);
    void setSecret(const std::string& item, std::string_view bytes);
    /// In the collection for new secrets, which is unlocked, or made where there is none.
    void create(const ItemAttributes& attributes, std::string_view bytes);
    /// Whether the user was asked for it; what they answered shows in what is left.
    bool remove(const std::string& item);
    /// The collection for new secrets, empty where there is none.
    std::string defaultCollection();
    bool isLocked(const std::string& collection);

private:
    GlibOwned<GVariant> call(const std::string& path, const char* interface, const char* method, GVariant* arguments,
                             const char* replyType);
    GlibOwned<GVariant> encoded(std::string_view bytes);
    /// Has the user asked; `prompt` is "/" where nothing needs to be. What a dismissed question ends with differs from
    /// service to service, so that `isGranted` looks at the result.
    void answerPrompt(const std::string& prompt, bool (*isGranted)(GVariant* result));
    void dismiss(const std::string& prompt);
    void createIn(const std::string& collection, const ItemAttributes& attributes, std::string_view bytes);
    std::string makeDefaultCollection();
    GCancellable* limit() const { return limit_->cancellable(); }

    const SecretServiceOptions& options_;
    std::unique_ptr<TimeLimit> limit_;
    GobjectOwned<::SecretService> service_;
};

/// Throws the KeychainFailure that an error of GLib means. Its text names the error's kind: the service's own words
/// are no one's to print.
[[noreturn]] void throwKeychainFailure(const GError* error, const std::string& what);

} // namespace vesk
