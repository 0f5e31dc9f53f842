#pragma once

#include "VeskShellCore/KeychainStore.hpp"
#include "VeskSupport/Task.hpp"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace vesk {

/// Keeps the grant of a sign-in link from before its redemption until after it has succeeded, so that it outlives a
/// crash in between. A value of three functions over some store of secrets, whose failures pass through.
struct VeskAuthRecoveryStore {
    /// The account in the keychain.
    static constexpr const char* account = KeychainAccount::veskAuthRedeemGrant;

    using Load = std::function<std::optional<std::string>()>;
    using Save = std::function<void(const std::string& grant)>;
    using Delete = std::function<void()>;

    /// In the keychain, which the store keeps a copy of.
    explicit VeskAuthRecoveryStore(const KeychainStore& keychain);
    VeskAuthRecoveryStore(Load load, Save save, Delete remove)
        : loadGrant(std::move(load)), saveGrant(std::move(save)), deleteGrant(std::move(remove)) {}

    Load loadGrant;
    Save saveGrant;
    Delete deleteGrant;

    /// Trimmed; none where nothing is stored, or blanks, which stay there.
    std::optional<std::string> pendingGrant() const;
    /// Stores the trimmed grant. Throws VeskAuthError `invalidResponse` for one of blanks.
    void persist(const std::string& grant) const;
    void clear() const { deleteGrant(); }
};

template <class Value> struct RecoverableAuthGrantCommit {
    /// What the redemption produced.
    Value value;
    /// Whether what was kept for recovery has been removed.
    bool recoveryGrantCleared = false;
};

/// Stores the grant and then runs `operation`, which holds everything that must happen for the grant to be spent: its
/// redemption and the storing of what came of it. Where the operation fails, its failure passes through and the grant
/// stays. Where it succeeds, the grant is removed; not being able to loses nobody the sign-in and is only told.
template <class Value>
Task<RecoverableAuthGrantCommit<Value>> withRecoverableAuthGrant(std::string grant, VeskAuthRecoveryStore store,
                                                                 std::function<Task<Value>()> operation) {
    store.persist(grant);
    Task<Value> running = operation();
    Value value = co_await std::move(running);
    RecoverableAuthGrantCommit<Value> commit{std::move(value)};
    try {
        store.deleteGrant();
        commit.recoveryGrantCleared = true;
    } catch (...) { // the flag tells
    }
    co_return commit;
}

} // namespace vesk
