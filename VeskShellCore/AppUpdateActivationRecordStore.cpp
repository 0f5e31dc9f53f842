#include "VeskShellCore/AppUpdateActivationRecordStore.hpp"

#include "VeskPlatform/FileReader.hpp"
#include "VeskPlatform/PrivateFiles.hpp"
#include "VeskPlatform/RandomSource.hpp"
#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <functional>
#include <utility>

namespace vesk {

AppUpdateActivationStoreError::AppUpdateActivationStoreError(Kind kind, std::string description)
    : ErrorRecord("AppUpdateActivationStoreError", static_cast<std::int64_t>(kind), std::move(description)),
      kind_(kind) {}

AppUpdateActivationStoreError AppUpdateActivationStoreError::unsupportedSchema(std::int64_t version) {
    AppUpdateActivationStoreError error(Kind::unsupportedSchema,
                                        "Vesk found update recovery data from an unsupported version.");
    error.schemaVersion_ = version;
    return error;
}

AppUpdateActivationStoreError AppUpdateActivationStoreError::atomicReplacementFailed(std::int32_t systemError) {
    AppUpdateActivationStoreError error(Kind::atomicReplacementFailed, "Vesk couldn't save update recovery data.");
    error.systemError_ = systemError;
    return error;
}

AppUpdateActivationStoreError AppUpdateActivationStoreError::invalidRecord() {
    return {Kind::invalidRecord, "Vesk found invalid update recovery data."};
}

namespace {

/// What every version of the file says of itself.
struct SchemaOfFile {
    std::int64_t version = 0;
};

} // namespace

template <>
inline constexpr auto recordTable<SchemaOfFile> = recordFields(required("schema_version", &SchemaOfFile::version));

namespace {

/// Free text must not get into the file: it may hold what is nobody's business.
bool isBoundedErrorClass(std::string_view text) {
    constexpr std::size_t mostCharacters = 80;
    if (text.empty() || characterCount(text) > mostCharacters) return false;
    std::string alphanumerics(text);
    std::erase_if(alphanumerics, [](char c) { return c == '_' || c == '-' || c == '.'; });
    return alphanumerics.empty() || alphanumericRuns(alphanumerics) == std::vector{alphanumerics};
}

bool isValid(const AppUpdateActivationRecord& record) {
    const std::string* const names[] = {&record.sourceVersion, &record.sourceBuild, &record.targetVersion,
                                        &record.targetBuild, &record.channel};
    if (std::ranges::any_of(names, [](const std::string* name) { return isBlank(*name); })) return false;
    if (record.recoveryAttempts < 0) return false;
    return !record.lastErrorClass || isBoundedErrorClass(*record.lastErrorClass);
}

template <class R> std::optional<R> decoded(const JsonValue& json) {
    try {
        return fromJson<R>(json);
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

std::optional<JsonValue> parsed(std::string_view bytes) {
    try {
        return parseJson(bytes);
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

void replacing(const std::function<void()>& step) {
    try {
        step();
    } catch (const ErrorRecord& error) {
        throw AppUpdateActivationStoreError::atomicReplacementFailed(systemErrorNumber(error).value_or(0));
    }
}

void removeIfThere(PrivateFiles& files, const std::string& path) {
    try {
        files.removeFile(path);
    } catch (const ErrorRecord&) { // what failed before is what the caller is told
    }
}

} // namespace

AppUpdateActivationRecord readActivationRecord(std::string_view bytes) {
    const auto json = parsed(bytes);
    if (!json) throw AppUpdateActivationStoreError::invalidRecord();
    if (const auto schema = decoded<SchemaOfFile>(*json);
        schema && schema->version != AppUpdateActivationRecord::knownSchemaVersion)
        throw AppUpdateActivationStoreError::unsupportedSchema(schema->version);
    auto record = decoded<AppUpdateActivationRecord>(*json);
    if (!record || !isValid(*record)) throw AppUpdateActivationStoreError::invalidRecord();
    return *std::move(record);
}

std::string activationRecordBytes(const AppUpdateActivationRecord& record) {
    return writeJson(toJson(record), SlashStyle::plain) + "\n";
}

AppUpdateActivationRecordStore::AppUpdateActivationRecordStore(Ports ports, std::string fileURL)
    : ports_(ports), fileURL_(std::move(fileURL)) {}

AppUpdateActivationRecordStore::AppUpdateActivationRecordStore(Platform& platform, std::string fileURL)
    : AppUpdateActivationRecordStore({.fileReader = platform.fileReader(),
                                      .fileManager = platform.privateFiles(),
                                      .randomSource = platform.randomSource()},
                                     std::move(fileURL)) {}

std::optional<AppUpdateActivationRecord> AppUpdateActivationRecordStore::load() {
    if (!ports_.fileManager.exists(fileURL_)) return std::nullopt;
    return readActivationRecord(ports_.fileReader.contents(fileURL_, JsonLimits().bytes));
}

void AppUpdateActivationRecordStore::save(const AppUpdateActivationRecord& record) {
    if (!isValid(record)) throw AppUpdateActivationStoreError::invalidRecord();
    const std::string folder = parentFolder(fileURL_);
    ports_.fileManager.createDirectories(folder, 0700);
    ports_.fileManager.setPermissions(folder, 0700); // it may have been there before
    const std::string bytes = activationRecordBytes(record);
    const std::string name = ".update-activation-" + randomUuid(ports_.randomSource).text() + ".tmp";
    const std::string temporary = folder + (folder.ends_with('/') ? "" : "/") + name;
    replacing([&] { ports_.fileManager.createFile(temporary, 0600); });
    try {
        replaceFile(temporary, bytes);
    } catch (...) {
        removeIfThere(ports_.fileManager, temporary);
        throw;
    }
}

void AppUpdateActivationRecordStore::replaceFile(const std::string& temporary, std::string_view bytes) {
    ports_.fileManager.writeThrough(temporary, bytes);
    ports_.fileManager.setPermissions(temporary, 0600);
    replacing([&] { ports_.fileManager.rename(temporary, fileURL_); });
    ports_.fileManager.setPermissions(fileURL_, 0600);
}

void AppUpdateActivationRecordStore::deleteRecord(const std::optional<Uuid>& expectedUpdateID) {
    if (!ports_.fileManager.exists(fileURL_)) return;
    if (expectedUpdateID) {
        const auto record = load();
        if (!record || record->updateID != *expectedUpdateID) return;
    }
    ports_.fileManager.removeFile(fileURL_);
}

} // namespace vesk
