#include "VeskPlatform/Linux/Secrets/SealedFileKeychain.hpp"
#include "tests/VeskPlatform/Linux/Secrets/SealedFileWorld.hpp"
#include "tests/support/KilledAtCall.hpp"
#include "tests/support/RefusedCalls.hpp"

#include <sys/wait.h>
#include <unistd.h>

namespace vesk::test {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

class SealedFileKeychainTests : public SealedFileWorld {};

TEST_F(SealedFileKeychainTests, ReadingAndRemovingCreateNothing) {
    SealedFileKeychain keychain(options());
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::itemNotFound);
    EXPECT_EQ(keychain.find("Vesk", "A"), KeychainStatus::itemNotFound);
    EXPECT_EQ(keychain.update("Vesk", "A", "x"), KeychainStatus::itemNotFound);
    EXPECT_EQ(keychain.remove("Vesk", "A"), KeychainStatus::itemNotFound);
    EXPECT_EQ(keychain.removeAll("Vesk"), KeychainStatus::itemNotFound);
    EXPECT_EQ(keychain.state().kind, std::nullopt);
    EXPECT_TRUE(std::filesystem::is_empty(folder.path()));
}

TEST_F(SealedFileKeychainTests, FolderAndFilesArePrivateWhateverTheMask) {
    const mode_t before = ::umask(0);
    EXPECT_EQ(SealedFileKeychain(options()).add("Vesk", "A", "x"), KeychainStatus::success);
    ::umask(before);
    EXPECT_EQ(mode(state), 0700U);
    EXPECT_EQ(mode(database), 0600U);
    EXPECT_EQ(mode(keyFile), 0600U);
    ::chmod(database.c_str(), 0644);
    EXPECT_EQ(SealedFileKeychain(options()).add("Vesk", "B", "x"), KeychainStatus::success);
    EXPECT_EQ(mode(database), 0600U);
}

TEST_F(SealedFileKeychainTests, TheBytesAreNowhereInTheFolder) {
    SealedFileKeychain keychain(options());
    keychain.add("Vesk", "A", "planted-secret");
    keychain.update("Vesk", "A", "planted-secret-2");
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
        const std::string bytes = entry.is_regular_file() ? read(entry.path()) : std::string();
        EXPECT_THAT(bytes, Not(HasSubstr("planted"))) << entry.path();
    }
}

TEST_F(SealedFileKeychainTests, AnotherProcessReadsWhatOneWrote) {
    SealedFileKeychain(options()).add("Vesk", "A", "secret");
    SealedFileKeychain other(options());
    EXPECT_EQ(other.copy("Vesk", "A").bytes, "secret");
    EXPECT_EQ(other.state().kind, SealingKeyKind::keyFile);
    EXPECT_EQ(other.state().trouble, "");
    EXPECT_EQ(other.state().path, database);
}

TEST_F(SealedFileKeychainTests, APassphraseFileIsTheKey) {
    const std::string file = passphrase("passphrase", "first line\r\nsecond line");
    EXPECT_EQ(SealedFileKeychain(options(file)).add("Vesk", "A", "secret"), KeychainStatus::success);
    EXPECT_FALSE(std::filesystem::exists(keyFile));
    const std::string same = passphrase("same", "first line");
    SealedFileKeychain other(options(same));
    EXPECT_EQ(other.copy("Vesk", "A").bytes, "secret");
    EXPECT_EQ(other.state().kind, SealingKeyKind::passphrase);
}

TEST_F(SealedFileKeychainTests, AWrongPassphraseReadsAndWritesNothing) {
    SealedFileKeychain(options(passphrase("right", "right"))).add("Vesk", "A", "secret");
    SealedFileKeychain wrong(options(passphrase("wrong", "planted-passphrase")));
    EXPECT_EQ(wrong.copy("Vesk", "A").status, KeychainStatus::decode);
    EXPECT_EQ(wrong.copy("Vesk", "A").bytes, std::nullopt);
    EXPECT_EQ(wrong.update("Vesk", "A", "x"), KeychainStatus::decode);
    EXPECT_EQ(wrong.add("Vesk", "B", "x"), KeychainStatus::decode);
    EXPECT_EQ(wrong.state().trouble, "The passphrase is not the one of the secrets.");
    for (const std::string& line : logged) EXPECT_THAT(line, Not(HasSubstr("planted")));
    SealedFileKeychain right(options(folder / "right"));
    EXPECT_EQ(right.copy("Vesk", "A").bytes, "secret");
    EXPECT_EQ(right.find("Vesk", "B"), KeychainStatus::itemNotFound);
}

TEST_F(SealedFileKeychainTests, WithoutItsPassphraseTheStoreIsLocked) {
    SealedFileKeychain(options(passphrase("right", "right"))).add("Vesk", "A", "secret");
    for (const std::string& file : {std::string(), folder / "missing", passphrase("empty", "\nsecond line")}) {
        SealedFileKeychain keychain(options(file));
        EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::locked) << file;
        EXPECT_EQ(keychain.add("Vesk", "B", "x"), KeychainStatus::locked) << file;
        EXPECT_EQ(keychain.find("Vesk", "A"), KeychainStatus::success) << "finding opens nothing";
    }
    EXPECT_FALSE(std::filesystem::exists(keyFile));
}

TEST_F(SealedFileKeychainTests, TheFirstSecretDecidesWhatTheKeyIsMadeOf) {
    SealedFileKeychain(options()).add("Vesk", "A", "secret");
    SealedFileKeychain later(options(passphrase("later", "a passphrase")));
    EXPECT_EQ(later.copy("Vesk", "A").bytes, "secret");
    EXPECT_EQ(later.add("Vesk", "B", "second"), KeychainStatus::success);
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "B").bytes, "second");
}

TEST_F(SealedFileKeychainTests, FilesThatOthersMayReadAreRefused) {
    SealedFileKeychain(options()).add("Vesk", "A", "secret");
    for (const mode_t wide : {0640, 0604, 0620}) {
        ::chmod(keyFile.c_str(), wide);
        logged.clear();
        EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").status, KeychainStatus::denied) << wide;
        expectOneLine(keyFile + " is refused: others may use it");
    }
    const std::string file = passphrase("wide", "planted", 0644);
    std::filesystem::remove_all(state);
    logged.clear();
    EXPECT_EQ(SealedFileKeychain(options(file)).add("Vesk", "A", "x"), KeychainStatus::denied);
    expectOneLine(file + " is refused: others may use it");
}

TEST_F(SealedFileKeychainTests, AKeyFileThatIsALinkOrAFolderIsRefused) {
    SealedFileKeychain(options()).add("Vesk", "A", "secret");
    std::filesystem::rename(keyFile, folder / "elsewhere");
    std::filesystem::create_symlink(folder / "elsewhere", keyFile);
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").status, KeychainStatus::denied);
    std::filesystem::remove(keyFile);
    std::filesystem::create_directory(keyFile);
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").status, KeychainStatus::denied);
}

TEST_F(SealedFileKeychainTests, ALostKeyFileIsNotMadeAnew) {
    SealedFileKeychain(options()).add("Vesk", "A", "secret");
    const std::string key = read(keyFile);
    std::filesystem::remove(keyFile);
    SealedFileKeychain keychain(options());
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::decode);
    EXPECT_EQ(keychain.add("Vesk", "B", "x"), KeychainStatus::decode);
    EXPECT_FALSE(std::filesystem::exists(keyFile));
    passphrase("state/secrets.key", key.substr(1));
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::decode) << "a cut one";
    passphrase("state/secrets.key", std::string(32, 'x'));
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::decode) << "another one";
    passphrase("state/secrets.key", key);
    EXPECT_EQ(keychain.copy("Vesk", "A").bytes, "secret");
}

TEST_F(SealedFileKeychainTests, AKeyFileThatIsThereIsUsedForANewStore) {
    std::filesystem::create_directories(state);
    passphrase("state/secrets.key", std::string(32, 'k'));
    EXPECT_EQ(SealedFileKeychain(options()).add("Vesk", "A", "secret"), KeychainStatus::success);
    EXPECT_EQ(read(keyFile), std::string(32, 'k'));
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").bytes, "secret");
}

TEST_F(SealedFileKeychainTests, NamesThatNoStoreTakesAreRefused) {
    SealedFileKeychain keychain(options());
    for (const std::string& name : {std::string("\xff"), std::string("a\0b", 3)}) {
        EXPECT_EQ(keychain.add("Vesk", name, "x"), KeychainStatus::parameter);
        EXPECT_EQ(keychain.update(name, "A", "x"), KeychainStatus::parameter);
        EXPECT_EQ(keychain.copy("Vesk", name).status, KeychainStatus::parameter);
        EXPECT_EQ(keychain.find("Vesk", name), KeychainStatus::parameter);
        EXPECT_EQ(keychain.remove("Vesk", name), KeychainStatus::parameter);
        EXPECT_EQ(keychain.removeAll(name), KeychainStatus::parameter);
    }
    EXPECT_FALSE(std::filesystem::exists(state));
}

TEST_F(SealedFileKeychainTests, TwoProcessesWriteOneAccountAndNothingIsLost) {
    SealedFileOptions patient = options();
    patient.patience = std::chrono::seconds(20);
    patient.log = {};
    constexpr int rounds = 10;
    std::vector<pid_t> children;
    for (int process = 0; process < 2; ++process) {
        const pid_t child = ::fork();
        if (child == 0) {
            SealedFileKeychain keychain(patient);
            int failures = 0;
            for (int i = 0; i < rounds; ++i) {
                const std::string text = std::to_string(process) + "-" + std::to_string(i);
                const auto updated = keychain.update("Vesk", "SHARED", text);
                const auto added =
                    updated == KeychainStatus::itemNotFound ? keychain.add("Vesk", "SHARED", text) : updated;
                if (added != KeychainStatus::success && added != KeychainStatus::duplicateItem) ++failures;
                if (keychain.add("Vesk", text, text) != KeychainStatus::success) ++failures;
            }
            ::_exit(failures);
        }
        children.push_back(child);
    }
    for (const pid_t child : children) {
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
    }
    SealedFileKeychain keychain(patient);
    EXPECT_THAT(keychain.copy("Vesk", "SHARED").bytes.value_or(""), ::testing::EndsWith("-9"));
    for (int process = 0; process < 2; ++process)
        for (int i = 0; i < rounds; ++i) {
            const std::string text = std::to_string(process) + "-" + std::to_string(i);
            EXPECT_EQ(keychain.copy("Vesk", text).bytes, text);
        }
}

TEST_F(SealedFileKeychainTests, AWriterKilledAnywhereLeavesTheOldOrTheNewSecret) {
    SealedFileKeychain(options()).add("Vesk", "A", "old");
    bool wasKilled = true;
    for (int stop = 1; wasKilled; stop += 4) {
        wasKilled = killedAtStop(stop, [&] { SealedFileKeychain(options()).update("Vesk", "A", "new"); });
        const auto copied = SealedFileKeychain(options()).copy("Vesk", "A");
        ASSERT_EQ(copied.status, KeychainStatus::success) << stop;
        ASSERT_TRUE(copied.bytes == "old" || copied.bytes == "new") << stop;
    }
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").bytes, "new");
}

TEST_F(SealedFileKeychainTests, AFirstWriterKilledAnywhereLeavesAStoreThatWorks) {
    bool wasKilled = true;
    for (int stop = 1; wasKilled; stop += 9) {
        std::filesystem::remove_all(state);
        wasKilled = killedAtStop(stop, [&] { SealedFileKeychain(options()).add("Vesk", "A", "first"); });
        SealedFileKeychain keychain(options());
        const auto added = keychain.add("Vesk", "A", "second");
        ASSERT_TRUE(added == KeychainStatus::success || added == KeychainStatus::duplicateItem) << stop;
        ASSERT_EQ(keychain.copy("Vesk", "A").bytes, added == KeychainStatus::success ? "second" : "first") << stop;
    }
}

} // namespace
} // namespace vesk::test
