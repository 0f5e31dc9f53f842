#pragma once

#include "VeskPlatform/Linux/Secrets/SealedFileKeychain.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/stat.h>
#include <vector>

namespace vesk::test {

/// A state folder, and keychains over its file.
class SealedFileWorld : public ::testing::Test {
protected:
    TemporaryFolder folder;
    const std::string state = folder / "state", database = state + "/secrets.sqlite", keyFile = state + "/secrets.key";
    std::vector<std::string> logged;

    SealedFileOptions options(const std::string& passphraseFile = "") {
        return {.folder = state,
                .passphraseFile = passphraseFile,
                .log = [this](const std::string& line) { logged.push_back(line); },
                .patience = std::chrono::milliseconds(20)};
    }
    std::string passphrase(const std::string& name, const std::string& text, mode_t mode = 0600) {
        const std::string path = folder.write(name, text);
        ::chmod(path.c_str(), mode);
        return path;
    }
    SqliteConnection connection() const { return {database, std::chrono::milliseconds(0)}; }
    static std::string read(const std::string& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    static unsigned mode(const std::string& path) {
        return static_cast<unsigned>(std::filesystem::status(path).permissions()) & 07777U;
    }
    void expectOneLine(const std::string& part) const {
        ASSERT_EQ(logged.size(), 1U) << ::testing::PrintToString(logged);
        EXPECT_THAT(logged.front(), ::testing::StartsWith("secrets: "));
        EXPECT_THAT(logged.front(), ::testing::HasSubstr(part));
    }
};

} // namespace vesk::test
