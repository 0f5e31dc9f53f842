#include "VeskPlatform/FileReader.hpp"
#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"
#include "VeskSupport/Text.hpp"
#include "tests/VeskShellCore/UpdateRecords.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/fakes/FakeFiles.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

using Kind = AppUpdateActivationStoreError::Kind;

/// Reads the files that another fake holds.
class ReaderOfPrivateFiles : public FileReader {
public:
    explicit ReaderOfPrivateFiles(test::FakePrivateFiles& files) : files_(files) {}
    int failure = 0;
    std::string contents(const std::string& path, std::uint64_t) override {
        if (failure != 0) throw PosixError(failure, path);
        const auto found = files_.files.find(path);
        if (found == files_.files.end()) throw PosixError(ENOENT, path);
        return found->second;
    }

private:
    test::FakePrivateFiles& files_;
};

class UpdateRecordStore : public testing::Test {
protected:
    const std::string folder = "/support/updates", file = folder + "/update-activation.json";
    const std::string temporary = folder + "/.update-activation-01020304-0506-4708-890A-0B0C0D0E0F10.tmp";

    test::FakePrivateFiles files;
    ReaderOfPrivateFiles reader{files};
    test::FakeRandomSource random;
    AppUpdateActivationRecordStore store{{reader, files, random}, file};
    AppUpdateActivationRecord record = test::updateRecord();

    void put(const std::string& bytes) {
        files.folders.insert(folder);
        files.files[file] = bytes;
    }
    /// A file with the literal in which a key has another value, given as JSON; without one, it is missing.
    void putWith(const std::string& key, const std::optional<std::string>& value) {
        auto object = std::get<JsonValue::Object>(parseJson(test::updateRecordLiteral).value);
        object.erase(key);
        if (value) object.emplace(key, parseJson(*value));
        put(writeJson({object}));
    }
    std::optional<std::string> heldBytes() const {
        const auto found = files.files.find(file);
        return found == files.files.end() ? std::nullopt : std::optional(found->second);
    }
    /// Whether nothing but the record lies there.
    bool isTidy() const { return files.files.size() == (heldBytes() ? 1U : 0U); }

    template <class Call> std::optional<AppUpdateActivationStoreError> storeError(Call call) {
        try {
            call();
        } catch (const AppUpdateActivationStoreError& error) {
            return error;
        }
        return std::nullopt;
    }
    std::optional<AppUpdateActivationStoreError> loadError() {
        return storeError([&] { store.load(); });
    }
    void expectUnsupported(std::int64_t version) {
        const auto error = loadError();
        ASSERT_TRUE(error);
        EXPECT_EQ(error->kind(), Kind::unsupportedSchema);
        EXPECT_EQ(error->schemaVersion(), version);
    }
    void expectInvalid(const std::string& what) {
        const auto error = loadError();
        ASSERT_TRUE(error) << what;
        EXPECT_EQ(error->kind(), Kind::invalidRecord) << what;
    }
    bool isSaved() {
        const auto error = storeError([&] { store.save(record); });
        EXPECT_TRUE(!error || error->kind() == Kind::invalidRecord);
        return !error;
    }
};

TEST(UpdateRecordStoreErrors, TextsAndCodes) {
    const auto schema = AppUpdateActivationStoreError::unsupportedSchema(7);
    EXPECT_EQ(schema.description(), "Vesk found update recovery data from an unsupported version.");
    EXPECT_EQ(schema.code(), 1);
    EXPECT_EQ(schema.schemaVersion(), 7);
    const auto replacement = AppUpdateActivationStoreError::atomicReplacementFailed(28);
    EXPECT_EQ(replacement.description(), "Vesk couldn't save update recovery data.");
    EXPECT_EQ(replacement.code(), 2);
    EXPECT_EQ(replacement.systemError(), 28);
    const auto invalid = AppUpdateActivationStoreError::invalidRecord();
    EXPECT_EQ(invalid.description(), "Vesk found invalid update recovery data.");
    EXPECT_EQ(invalid.code(), 3);
    for (const auto& error : {schema, replacement, invalid}) EXPECT_EQ(error.domain(), "AppUpdateActivationStoreError");
}

TEST_F(UpdateRecordStore, WithoutAFileThereIsNoRecord) { EXPECT_EQ(store.load(), std::nullopt); }

TEST_F(UpdateRecordStore, ARecordIsLoaded) {
    put(test::updateRecordLiteral);
    EXPECT_EQ(store.load(), record);
}

TEST_F(UpdateRecordStore, AFailureOfReadingIsRaisedAsItIs) {
    put(test::updateRecordLiteral);
    reader.failure = EACCES;
    try {
        store.load();
        FAIL();
    } catch (const PosixError& error) {
        EXPECT_EQ(error.code(), EACCES);
        EXPECT_EQ(error.description(), file + ": Permission denied");
    }
}

TEST_F(UpdateRecordStore, NothingButANewerVersionIsUnsupported) {
    put(R"({"schema_version":2})");
    expectUnsupported(2);
}

TEST_F(UpdateRecordStore, ACompleteRecordOfAnotherVersionIsUnsupported) {
    for (const std::int64_t version : {2, 0, -1}) {
        putWith("schema_version", std::to_string(version));
        expectUnsupported(version);
    }
    putWith("schema_version", "2.0");
    expectUnsupported(2);
}

TEST_F(UpdateRecordStore, AnInvalidRecordOfAnotherVersionIsUnsupported) {
    auto object = std::get<JsonValue::Object>(parseJson(test::updateRecordLiteral).value);
    object["schema_version"] = JsonValue{std::int64_t{3}};
    object["channel"] = JsonValue{std::string(" ")};
    put(writeJson({object}));
    expectUnsupported(3);
}

TEST_F(UpdateRecordStore, WhatTellsNoOtherVersionIsInvalid) {
    for (const char* bytes :
         {"", "{", "null", "[]", "2", "{}", R"({"schema_version":"2"})", R"({"schema_version":1})",
          R"({"schema_version":2.5})", R"({"schema_version":true})", R"({"schema_version":false})",
          R"({"schema_version":null})", R"({"schema_version":1e30})", R"([{"schema_version":2}])",
          R"({"schema_version":2)", R"({"nested":{"schema_version":2}})", "{\"schema_version\":2,\"a\":\"\xFF\"}"}) {
        put(bytes);
        expectInvalid(bytes);
    }
}

TEST_F(UpdateRecordStore, AFieldThatCannotBeDecodedIsInvalid) {
    for (const auto& [key, value] :
         std::initializer_list<std::pair<const char*, const char*>>{{"update_id", R"("0E984725")"},
                                                                    {"phase", R"("stopped")"},
                                                                    {"created_at", R"("2026-04-26T14:03:22.123Z")"},
                                                                    {"updated_at", "0"},
                                                                    {"recovery_attempts", R"("2")"},
                                                                    {"assistant_was_running", "1"},
                                                                    {"assistant_pid_before_update", "1.5"}}) {
        putWith(key, value);
        expectInvalid(key);
        putWith(key, std::nullopt);
        if (std::string_view(key) != "assistant_pid_before_update") expectInvalid(key);
    }
}

TEST_F(UpdateRecordStore, BlankNamesAreInvalidOnBothSides) {
    using Member = std::string AppUpdateActivationRecord::*;
    for (const auto& [key, member] : std::initializer_list<std::pair<const char*, Member>>{
             {"source_version", &AppUpdateActivationRecord::sourceVersion},
             {"source_build", &AppUpdateActivationRecord::sourceBuild},
             {"target_version", &AppUpdateActivationRecord::targetVersion},
             {"target_build", &AppUpdateActivationRecord::targetBuild},
             {"channel", &AppUpdateActivationRecord::channel}})
        for (const char* blank : {"", " ", " \t\n", "\u00A0\u2003"}) {
            putWith(key, writeJson({std::string(blank)}));
            expectInvalid(key);
            record = test::updateRecord();
            record.*member = blank;
            EXPECT_FALSE(isSaved()) << key;
        }
}

TEST_F(UpdateRecordStore, NegativeAttemptsAreInvalidOnBothSidesAndTheEarlierFileStays) {
    putWith("recovery_attempts", "-1");
    expectInvalid("-1");
    put(test::updateRecordLiteral);
    record.recoveryAttempts = -1;
    EXPECT_FALSE(isSaved());
    EXPECT_EQ(heldBytes(), test::updateRecordLiteral);
    record.recoveryAttempts = 0;
    EXPECT_TRUE(isSaved());
}

struct ErrorClassCase {
    std::string text;
    bool valid;
};

TEST_F(UpdateRecordStore, ErrorClassesAreShortMachineWords) {
    std::string eighty, eightyOne;
    for (int i = 0; i < 80; ++i) eighty += "e\u0301"; // one character each, of two scalars
    eightyOne = eighty + "x";
    const ErrorClassCase cases[] = {
        {std::string(80, 'a'), true},
        {std::string(81, 'a'), false},
        {"stop timed out", false},
        {"", false},
        {"a", true},
        {"assistant_stop-timeout.2", true},
        {"_", true},
        {"...", true},
        {"\u00FCber\u00DFicht", true},
        {"\u0661\u0662\u0663", true},
        {"\u2160\u00BD", true},
        {"\u505C\u6B62", true},
        {eighty, true},
        {eightyOne, false},
        {"a\n", false},
        {"a/b", false},
        {"a:b", false},
        {"a\u00A0b", false},
        {"a\u20AC", false},
        {"\U0001F600", false},
        {"a\u2014b", false},
        {std::string("a\0b", 3), false},
        {"a\xFF", false},
    };
    for (const auto& c : cases) {
        record.lastErrorClass = c.text;
        EXPECT_EQ(isSaved(), c.valid) << c.text;
        if (isWellFormedUtf8(c.text)) {
            putWith("last_error_class", writeJson({c.text}));
            EXPECT_EQ(!loadError(), c.valid) << c.text;
        }
    }
    record.lastErrorClass.reset();
    EXPECT_TRUE(isSaved());
    EXPECT_EQ(store.load(), record);
}

TEST_F(UpdateRecordStore, SavingTakesItsStepsInOrder) {
    store.save(record);
    EXPECT_EQ(files.calls, (std::vector<std::string>{"createDirectories " + folder, "setPermissions " + folder,
                                                     "createFile " + temporary, "writeThrough " + temporary,
                                                     "setPermissions " + temporary, "rename " + temporary,
                                                     "setPermissions " + file}));
}

TEST_F(UpdateRecordStore, SavingLeavesOnlyTheRecordInPrivate) {
    files.folders.insert(folder);
    files.modes[folder] = 0755;
    store.save(record);
    EXPECT_TRUE(isTidy());
    EXPECT_EQ(heldBytes(), test::updateRecordLiteral + "\n");
    EXPECT_EQ(files.modes[folder], 0700U);
    EXPECT_EQ(files.modes[file], 0600U);
    EXPECT_EQ(store.load(), record);
}

TEST_F(UpdateRecordStore, SlashesAreWrittenAsTheyAre) {
    record.channel = "beta/nightly";
    store.save(record);
    EXPECT_NE(heldBytes()->find("\"beta/nightly\""), std::string::npos);
}

TEST_F(UpdateRecordStore, EachSaveHasATemporaryFileOfItsOwn) {
    store.save(record);
    const auto first = files.calls.at(2);
    files.calls.clear();
    store.save(record);
    EXPECT_NE(files.calls.at(2), first);
    EXPECT_TRUE(files.calls.at(2).starts_with("createFile " + folder + "/.update-activation-"));
}

TEST_F(UpdateRecordStore, AnInvalidRecordTouchesNothing) {
    record.channel = "";
    EXPECT_FALSE(isSaved());
    EXPECT_TRUE(files.calls.empty());
}

TEST_F(UpdateRecordStore, AFileInTheRootHasItsTemporaryFileBesideIt) {
    AppUpdateActivationRecordStore atRoot({reader, files, random}, "/record");
    atRoot.save(record);
    EXPECT_TRUE(files.calls.at(2).starts_with("createFile /.update-activation-")) << files.calls.at(2);
}

TEST_F(UpdateRecordStore, AFailureOfAnyStepIsToldAndKeepsTheEarlierFile) {
    const struct {
        const char* step;
        bool isReplacement;
    } steps[] = {{"making the folder", false},
                 {"the folder's permissions", false},
                 {"creating", true},
                 {"writing", false},
                 {"permissions", false},
                 {"renaming", true},
                 {"permissions of the target", false}};
    std::size_t number = 0;
    for (const auto& step : steps) {
        SCOPED_TRACE(step.step);
        put("old");
        files.calls.clear();
        files.failingCall = ++number;
        files.failure = ENOSPC;
        try {
            store.save(record);
            FAIL();
        } catch (const AppUpdateActivationStoreError& error) {
            EXPECT_TRUE(step.isReplacement);
            EXPECT_EQ(error.kind(), Kind::atomicReplacementFailed);
            EXPECT_EQ(error.systemError(), ENOSPC);
        } catch (const PosixError& error) {
            EXPECT_FALSE(step.isReplacement);
            EXPECT_EQ(error.code(), ENOSPC);
        }
        const bool isReplaced = number == std::size(steps);
        EXPECT_EQ(heldBytes(), isReplaced ? test::updateRecordLiteral + "\n" : "old");
        EXPECT_TRUE(isTidy()) << "no temporary file stays";
        const bool removes = files.calls.back().starts_with("removeFile " + folder + "/.update-activation-");
        EXPECT_EQ(removes, number > 3) << "there is one to remove";
    }
}

TEST_F(UpdateRecordStore, AFailedRemovalOfTheTemporaryFileHidesNothing) {
    put("old");
    files.failing = {"rename", "removeFile"};
    files.failure = EROFS;
    const auto error = storeError([&] { store.save(record); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->systemError(), EROFS);
    EXPECT_EQ(heldBytes(), "old");
}

TEST_F(UpdateRecordStore, ATemporaryFileThatIsThereIsNotTouched) {
    files.files[temporary] = "another's";
    const auto error = storeError([&] { store.save(record); });
    ASSERT_TRUE(error);
    EXPECT_EQ(error->systemError(), EEXIST);
    EXPECT_EQ(files.files[temporary], "another's");
}

TEST_F(UpdateRecordStore, DeletingWithoutAFileDoesNothing) {
    store.deleteRecord(std::nullopt);
    store.deleteRecord(record.updateID);
    EXPECT_EQ(files.calls, (std::vector<std::string>{"exists " + file, "exists " + file}));
}

TEST_F(UpdateRecordStore, DeletingWithoutAnUpdateRemovesWhateverIsThere) {
    for (const std::string& bytes :
         {test::updateRecordLiteral, std::string("{"), std::string("{\"schema_version\":2}")}) {
        put(bytes);
        store.deleteRecord(std::nullopt);
        EXPECT_EQ(heldBytes(), std::nullopt) << bytes;
    }
}

TEST_F(UpdateRecordStore, DeletingTheExpectedUpdateRemovesIt) {
    put(test::updateRecordLiteral);
    store.deleteRecord(record.updateID);
    EXPECT_EQ(heldBytes(), std::nullopt);
}

TEST_F(UpdateRecordStore, DeletingAnotherUpdateLeavesTheFileWithoutAFailure) {
    put(test::updateRecordLiteral);
    store.deleteRecord(Uuid());
    EXPECT_EQ(heldBytes(), test::updateRecordLiteral);
}

TEST_F(UpdateRecordStore, DeletingByUpdateNeedsARecordThatCanBeLoaded) {
    put("{");
    EXPECT_EQ(storeError([&] { store.deleteRecord(record.updateID); }).value().kind(), Kind::invalidRecord);
    EXPECT_EQ(heldBytes(), "{");
    put(R"({"schema_version":2})");
    EXPECT_EQ(storeError([&] { store.deleteRecord(record.updateID); }).value().kind(), Kind::unsupportedSchema);
    put(test::updateRecordLiteral);
    reader.failure = EIO;
    EXPECT_THROW(store.deleteRecord(record.updateID), PosixError);
    EXPECT_EQ(heldBytes(), test::updateRecordLiteral);
}

TEST_F(UpdateRecordStore, AFailureOfRemovingIsRaised) {
    put(test::updateRecordLiteral);
    files.failing = {"removeFile"};
    EXPECT_THROW(store.deleteRecord(std::nullopt), PosixError);
    EXPECT_THROW(store.deleteRecord(record.updateID), PosixError);
}

} // namespace
} // namespace vesk
