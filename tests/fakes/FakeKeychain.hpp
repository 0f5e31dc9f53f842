#pragma once

#include "VeskPlatform/KeychainItems.hpp"

#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace vesk::test {

/// Items in memory. Tests may have a verb fail, for one account or for all, and read which calls came in which order.
class FakeKeychain : public KeychainItems {
public:
    using Key = std::pair<std::string, std::string>;
    struct Fault {
        std::string verb;
        /// Empty for every account.
        std::string account;
        std::int32_t status = KeychainStatus::failed;
        /// How many calls fail; the others are done.
        int times = 1'000;
    };

    std::map<Key, std::string> items;
    std::vector<Fault> faults;
    /// Such as "add Vesk/OPENAI_API_KEY".
    std::vector<std::string> calls;
    /// Accounts whose items are something else than bytes.
    std::vector<std::string> withoutBytes;
    /// What reading turns the bytes of an account into.
    std::map<std::string, std::string> readAs;

    std::int32_t update(const std::string& service, const std::string& account, std::string_view bytes) override {
        const std::scoped_lock lock(mutex_);
        if (const auto status = fault("update", service, account)) return *status;
        const auto found = items.find({service, account});
        if (found == items.end()) return KeychainStatus::itemNotFound;
        found->second = bytes;
        return KeychainStatus::success;
    }
    std::int32_t add(const std::string& service, const std::string& account, std::string_view bytes) override {
        const std::scoped_lock lock(mutex_);
        if (const auto status = fault("add", service, account)) return *status;
        return items.emplace(Key{service, account}, bytes).second ? KeychainStatus::success
                                                                  : KeychainStatus::duplicateItem;
    }
    Copied copy(const std::string& service, const std::string& account) override {
        const std::scoped_lock lock(mutex_);
        if (const auto status = fault("copy", service, account)) return {*status, std::nullopt};
        const auto found = items.find({service, account});
        if (found == items.end()) return {KeychainStatus::itemNotFound, std::nullopt};
        for (const std::string& other : withoutBytes)
            if (other == account) return {KeychainStatus::success, std::nullopt};
        const auto changed = readAs.find(account);
        return {KeychainStatus::success, changed == readAs.end() ? found->second : changed->second};
    }
    std::int32_t find(const std::string& service, const std::string& account) override {
        const std::scoped_lock lock(mutex_);
        if (const auto status = fault("find", service, account)) return *status;
        return items.contains({service, account}) ? KeychainStatus::success : KeychainStatus::itemNotFound;
    }
    std::int32_t remove(const std::string& service, const std::string& account) override {
        const std::scoped_lock lock(mutex_);
        if (const auto status = fault("remove", service, account)) return *status;
        return items.erase({service, account}) > 0 ? KeychainStatus::success : KeychainStatus::itemNotFound;
    }
    std::int32_t removeAll(const std::string& service) override {
        const std::scoped_lock lock(mutex_);
        if (const auto status = fault("removeAll", service, "")) return *status;
        const auto count = std::erase_if(items, [&](const auto& item) { return item.first.first == service; });
        return count > 0 ? KeychainStatus::success : KeychainStatus::itemNotFound;
    }

private:
    std::optional<std::int32_t> fault(const std::string& verb, const std::string& service, const std::string& account) {
        calls.push_back(verb + " " + service + (account.empty() ? "" : "/" + account));
        for (Fault& fault : faults)
            if (fault.verb == verb && (fault.account.empty() || fault.account == account) && fault.times > 0) {
                --fault.times;
                return fault.status;
            }
        return std::nullopt;
    }

    std::mutex mutex_; // called from threads
};

} // namespace vesk::test
