#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// What a store of secrets answers: the numbers of the keychain of macOS (Security/SecBase.h), which every store uses.
namespace KeychainStatus {
inline constexpr std::int32_t success = 0;
/// Nothing is stored under that service and account (errSecItemNotFound).
inline constexpr std::int32_t itemNotFound = -25300;
/// Something is stored there already (errSecDuplicateItem).
inline constexpr std::int32_t duplicateItem = -25299;
/// The store is locked and was not unlocked in time (errSecInteractionNotAllowed).
inline constexpr std::int32_t locked = -25308;
/// The user or the system refused (errSecAuthFailed).
inline constexpr std::int32_t denied = -25293;
/// No store answers, or not in time (errSecNotAvailable).
inline constexpr std::int32_t unavailable = -25291;
/// What is stored cannot be read: it was changed, or sealed with another key (errSecDecode).
inline constexpr std::int32_t decode = -26275;
/// The store failed in a way of its own, such as a full disk (errSecIO).
inline constexpr std::int32_t failed = -36;
/// An argument that no store takes, such as text that is no UTF-8 (errSecParam).
inline constexpr std::int32_t parameter = -50;
} // namespace KeychainStatus

/// A user's secrets: items of bytes, each under a service and an account, both UTF-8 without null bytes. Every call
/// answers with a status of the table above and ends within some seconds, or a minute where it asks the user to unlock
/// the store. No log line or status tells anything of an item's bytes. Blocking; safe from any thread and beside other
/// processes.
class KeychainItems {
public:
    struct Copied {
        std::int32_t status = KeychainStatus::success;
        /// What is stored, where the status is a success; none where that is no bytes.
        std::optional<std::string> bytes;
    };

    virtual ~KeychainItems() = default;
    /// Changes the bytes of an item that is there and nothing else of it; `itemNotFound` where there is none.
    virtual std::int32_t update(const std::string& service, const std::string& account, std::string_view bytes) = 0;
    /// Makes a new item; `duplicateItem` where there is one, which stays as it is.
    virtual std::int32_t add(const std::string& service, const std::string& account, std::string_view bytes) = 0;
    virtual Copied copy(const std::string& service, const std::string& account) = 0;
    /// A success where there is an item; its bytes are not read, so that nothing has to be unlocked for it.
    virtual std::int32_t find(const std::string& service, const std::string& account) = 0;
    /// Removes the item; `itemNotFound` where there is none.
    virtual std::int32_t remove(const std::string& service, const std::string& account) = 0;
    /// Removes all items of a service; `itemNotFound` where it has none.
    virtual std::int32_t removeAll(const std::string& service) = 0;
};

} // namespace vesk
