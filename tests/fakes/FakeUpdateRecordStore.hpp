#pragma once

#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"

#include <cerrno>
#include <set>
#include <vector>

namespace vesk::test {

/// One record in memory; writes down what was saved, and fails where a test says so.
class FakeUpdateRecordStore : public AppUpdateActivationRecordStoring {
public:
    std::optional<AppUpdateActivationRecord> record;
    std::vector<AppUpdateActivationRecord> saved;
    int loads = 0, deletions = 0;
    /// A file that is no record.
    bool isCorrupt = false;
    /// Which saves fail, counted from 1; and whether all do.
    std::set<std::size_t> failingSaves;
    bool failsToSave = false, failsToDelete = false;

    std::optional<AppUpdateActivationRecord> load() override {
        ++loads;
        if (isCorrupt) throw AppUpdateActivationStoreError::invalidRecord();
        return record;
    }
    void save(const AppUpdateActivationRecord& value) override {
        ++saves_;
        if (failsToSave || failingSaves.contains(saves_))
            throw AppUpdateActivationStoreError::atomicReplacementFailed(ENOSPC);
        isCorrupt = false;
        record = value;
        saved.push_back(value);
    }
    void deleteRecord(const std::optional<Uuid>& expectedUpdateID) override {
        ++deletions;
        if (failsToDelete) throw PosixError(EIO, "record");
        if (record && (!expectedUpdateID || record->updateID == *expectedUpdateID)) record.reset();
    }

private:
    std::size_t saves_ = 0;
};

} // namespace vesk::test
