#pragma once

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Task.hpp"

#include <functional>
#include <optional>
#include <string>
#include <utility>

namespace vesk {

/// Keeps the grant of a sign-in link from before its redemption until after it has succeeded, so that it outlives a
/// crash in between. A value of three functions over some store of secrets, whose failures pass through.
struct VeskAuthRecoveryStore {
    /// The account in a store of secrets.
    static constexpr const char* account = "VESK_AUTH_REDEEM_GRANT";

    std::function<std::optional<std::string>()> loadGrant;
    std::function<void(const std::string& grant)> saveGrant;
    std::function<void()> deleteGrant;

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
