#pragma once

#include "VeskPlatform/Consent.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Instant.hpp"

#include <chrono>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

/// The states that are stored, with the numbers of the probes.
enum class ConsentState { notDetermined = 0, restricted = 1, denied = 2, granted = 3 };

/// Who decided is "vesk consent", "dialog" or "terminal"; when is UTC text with a "Z".
struct ConsentDecision {
    ConsentState state = ConsentState::notDetermined;
    std::string decidedBy;
    std::string decidedAt;

    bool operator==(const ConsentDecision&) const = default;
};

/// A consent database that cannot be used: locked, damaged, not readable, not writable. Domain "VeskConsent", the code
/// is SQLite's; the description names the file.
class ConsentDatabaseError : public ErrorRecord {
public:
    ConsentDatabaseError(std::int64_t code, std::string description);
};

/// The user's decisions, one row per capability, in the file `consent.sqlite` (mode 0600) of one folder (made with mode
/// 0700). Each call opens the file, does one transaction and closes it, so that several processes may use it at once;
/// it waits for another process as long as `patience` and no longer. A capability without a row is not determined.
/// Every call throws ConsentDatabaseError.
class ConsentDatabase {
public:
    explicit ConsentDatabase(std::string folder, std::chrono::milliseconds patience = std::chrono::milliseconds(2000));

    const std::string& path() const { return path_; }

    /// These never create anything: where there is no file, there are no decisions.
    std::map<std::string, ConsentDecision> decisions() const { return decisions(patience_); }
    ConsentState state(const std::string& id) const { return state(id, patience_); }
    /// The same with a patience of its own.
    ConsentState state(const std::string& id, std::chrono::milliseconds patience) const;

    /// Writes all or none; the last decision counts.
    void decide(const std::vector<std::string>& ids, const ConsentDecision& decision);
    /// Writes only where nothing has been decided yet, and returns the state that stands then.
    ConsentState decideFirst(const std::string& id, const ConsentDecision& decision);
    /// Forgets the decisions. Where there is no file, none is made.
    void reset(const std::vector<std::string>& ids);

private:
    std::map<std::string, ConsentDecision> decisions(std::chrono::milliseconds patience) const;
    bool exists() const;
    void prepareFile() const;

    std::string folder_, path_;
    std::chrono::milliseconds patience_;
};

} // namespace vesk
