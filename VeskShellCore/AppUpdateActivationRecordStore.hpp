#pragma once

#include "VeskPlatform/Platform.hpp"
#include "VeskShellCore/AppUpdateActivationRecord.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vesk {

/// A failure of the update record. Domain "AppUpdateActivationStoreError"; the code is the kind's place.
class AppUpdateActivationStoreError : public ErrorRecord {
public:
    enum class Kind { unsupportedSchema = 1, atomicReplacementFailed = 2, invalidRecord = 3 };

    static AppUpdateActivationStoreError unsupportedSchema(std::int64_t version);
    static AppUpdateActivationStoreError atomicReplacementFailed(std::int32_t systemError);
    static AppUpdateActivationStoreError invalidRecord();

    Kind kind() const { return kind_; }
    /// The version that was found; 0 of other kinds.
    std::int64_t schemaVersion() const { return schemaVersion_; }
    /// The `errno` of a failed replacement; 0 of other kinds.
    std::int32_t systemError() const { return systemError_; }

private:
    AppUpdateActivationStoreError(Kind kind, std::string description);

    Kind kind_;
    std::int64_t schemaVersion_ = 0;
    std::int32_t systemError_ = 0;
};

/// The record that the bytes of a file hold. Throws AppUpdateActivationStoreError: a file of another version is told as
/// such, also where nothing else in it can be understood.
AppUpdateActivationRecord readActivationRecord(std::string_view bytes);

/// The bytes of a record's file.
std::string activationRecordBytes(const AppUpdateActivationRecord& record);

/// Keeps at most one update record. Safe from one thread at a time.
class AppUpdateActivationRecordStoring {
public:
    virtual ~AppUpdateActivationRecordStoring() = default;
    /// None where there is no record. Throws AppUpdateActivationStoreError, or PosixError of the file.
    virtual std::optional<AppUpdateActivationRecord> load() = 0;
    /// Replaces the record or, where it throws, keeps what there was. Throws as `load`.
    virtual void save(const AppUpdateActivationRecord& record) = 0;
    /// Removes the record, whatever it holds. With an expected update, only that update's record: the one of a newer
    /// update stays, without a failure, and one that cannot be loaded stays, with the failure of loading it.
    virtual void deleteRecord(const std::optional<Uuid>& expectedUpdateID) = 0;
};

/// Keeps the record in one file that only the user may read, in a folder of which the same holds. A reader in another
/// process sees the old record or the new one, never a mix. A crash while saving leaves at most a stray file beside it,
/// named ".update-activation-", a UUID and ".tmp".
class AppUpdateActivationRecordStore : public AppUpdateActivationRecordStoring {
public:
    /// They outlive the store.
    struct Ports {
        FileReader& fileReader;
        PrivateFiles& fileManager;
        RandomSource& randomSource;
    };

    /// `fileURL` is an absolute path.
    AppUpdateActivationRecordStore(Ports ports, std::string fileURL);
    AppUpdateActivationRecordStore(Platform& platform, std::string fileURL);

    std::optional<AppUpdateActivationRecord> load() override;
    void save(const AppUpdateActivationRecord& record) override;
    void deleteRecord(const std::optional<Uuid>& expectedUpdateID) override;

private:
    void replaceFile(const std::string& temporary, std::string_view bytes);

    Ports ports_;
    std::string fileURL_;
};

} // namespace vesk
