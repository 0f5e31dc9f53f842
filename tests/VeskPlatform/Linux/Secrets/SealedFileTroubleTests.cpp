// Files that are damaged, changed, locked or cannot grow: each is a status and a line, and nothing is lost.

#include "VeskPlatform/Linux/Secrets/SealedFileKeychain.hpp"
#include "tests/VeskPlatform/Linux/Secrets/SealedFileWorld.hpp"
#include "tests/support/Privileges.hpp"
#include "tests/support/RefusedCalls.hpp"

#include <csignal>
#include <sys/resource.h>

namespace vesk::test {
namespace {

class SealedFileTroubleTests : public SealedFileWorld {
protected:
    void SetUp() override {
        SealedFileKeychain keychain(options());
        keychain.add("Vesk", "A", "secret");
        keychain.add("Vesk", "B", "other");
        logged.clear();
    }
    std::string column(const std::string& statement) const {
        SqliteConnection opened = connection();
        SqliteQuery query(opened, statement);
        return query.next() ? query.text(0) : "";
    }
};

TEST_F(SealedFileTroubleTests, ARowUnderAnotherNameIsWorthNothing) {
    connection().run("UPDATE secret SET sealed = (SELECT sealed FROM secret WHERE account = 'B') WHERE account = 'A'");
    SealedFileKeychain keychain(options());
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::decode);
    expectOneLine("The secret of A was changed.");
    EXPECT_EQ(keychain.copy("Vesk", "B").bytes, "other");
}

TEST_F(SealedFileTroubleTests, ChangedBytesAreFoundAndCanBeWrittenAnew) {
    for (const char* change : {"x''", "zeroblob(60)", "'text'", "12", "substr(sealed, 2)"}) {
        connection().run(std::string("UPDATE secret SET sealed = ") + change + " WHERE account = 'A'");
        EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").status, KeychainStatus::decode) << change;
    }
    EXPECT_EQ(SealedFileKeychain(options()).update("Vesk", "A", "new"), KeychainStatus::success);
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").bytes, "new");
}

TEST_F(SealedFileTroubleTests, AChangedSealIsFound) {
    for (const char* change :
         {"DELETE FROM seal", "UPDATE seal SET key = 'nothing'", "UPDATE seal SET proof = zeroblob(40)",
          "UPDATE seal SET key = 'passphrase', salt = zeroblob(16), operations = 1, memory = 1"}) {
        std::filesystem::copy_file(database, folder / "kept", std::filesystem::copy_options::overwrite_existing);
        connection().run(change);
        SealedFileKeychain keychain(options(passphrase("passphrase", "x")));
        EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::decode) << change;
        EXPECT_EQ(keychain.update("Vesk", "A", "x"), KeychainStatus::decode) << change;
        std::filesystem::copy_file(folder / "kept", database, std::filesystem::copy_options::overwrite_existing);
    }
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").bytes, "secret");
}

TEST_F(SealedFileTroubleTests, AFileThatIsNoDatabaseStaysAsItIs) {
    const std::string bytes(5000, 'n');
    folder.write("state/secrets.sqlite", bytes);
    SealedFileKeychain keychain(options());
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::decode);
    EXPECT_EQ(keychain.add("Vesk", "A", "x"), KeychainStatus::decode);
    EXPECT_EQ(keychain.remove("Vesk", "A"), KeychainStatus::decode);
    EXPECT_EQ(keychain.state().status, KeychainStatus::decode);
    EXPECT_EQ(read(database), bytes);
}

TEST_F(SealedFileTroubleTests, ADatabaseWithOtherTablesIsOfNoUse) {
    connection().run("DROP TABLE secret; CREATE TABLE secret (x)");
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").status, KeychainStatus::decode);
    EXPECT_EQ(SealedFileKeychain(options()).add("Vesk", "C", "x"), KeychainStatus::decode);
}

TEST_F(SealedFileTroubleTests, AnEmptyFileIsAnEmptyStore) {
    folder.write("state/secrets.sqlite", "");
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").status, KeychainStatus::itemNotFound);
    EXPECT_EQ(SealedFileKeychain(options()).add("Vesk", "A", "x"), KeychainStatus::success);
}

TEST_F(SealedFileTroubleTests, AFolderInTheFilesPlaceIsAFailure) {
    std::filesystem::remove(database);
    std::filesystem::create_directory(database);
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").status, KeychainStatus::failed);
    EXPECT_EQ(SealedFileKeychain(options()).add("Vesk", "A", "x"), KeychainStatus::failed);
}

TEST_F(SealedFileTroubleTests, ALockThatIsHeldForTooLongIsUnavailable) {
    SqliteConnection other = connection();
    other.run("BEGIN EXCLUSIVE");
    SealedFileKeychain keychain(options());
    EXPECT_EQ(keychain.copy("Vesk", "A").status, KeychainStatus::unavailable);
    EXPECT_EQ(keychain.update("Vesk", "A", "x"), KeychainStatus::unavailable);
    EXPECT_EQ(keychain.add("Vesk", "C", "x"), KeychainStatus::unavailable);
    other.run("ROLLBACK");
    EXPECT_EQ(keychain.copy("Vesk", "A").bytes, "secret");
}

TEST_F(SealedFileTroubleTests, AFullDiskIsAFailureAndTheOldSecretStays) {
    EXPECT_EQ(inChild([&] {
                  ::signal(SIGXFSZ, SIG_IGN);
                  const rlimit limit{8192, 8192};
                  ::setrlimit(RLIMIT_FSIZE, &limit);
                  const auto status = SealedFileKeychain(options()).update("Vesk", "A", std::string(200'000, 'x'));
                  return status == KeychainStatus::failed ? 0 : 1;
              }),
              0);
    EXPECT_EQ(SealedFileKeychain(options()).copy("Vesk", "A").bytes, "secret");
}

TEST_F(SealedFileTroubleTests, AKeyFileThatCannotBeWrittenLeavesNone) {
    std::filesystem::remove_all(state);
    EXPECT_EQ(inChild([&] {
                  refuseCall(SYS_linkat, ENOSPC);
                  refuseCall(SYS_link, ENOSPC);
                  return SealedFileKeychain(options()).add("Vesk", "A", "x") == KeychainStatus::failed ? 0 : 1;
              }),
              0);
    for (const auto& entry : std::filesystem::directory_iterator(state))
        EXPECT_THAT(entry.path().filename().string(), ::testing::Not(::testing::HasSubstr("key")));
    EXPECT_EQ(SealedFileKeychain(options()).add("Vesk", "A", "x"), KeychainStatus::success);
}

TEST_F(SealedFileTroubleTests, AFolderThatMayNotBeWrittenIsDenied) {
    const std::string closed = folder / "closed";
    std::filesystem::create_directory(closed);
    ::chmod(closed.c_str(), 0500);
    const WithoutPrivileges unprivileged;
    SealedFileOptions elsewhere = options();
    elsewhere.folder = closed;
    EXPECT_EQ(SealedFileKeychain(elsewhere).add("Vesk", "A", "x"), KeychainStatus::denied);
    elsewhere.folder = closed + "/below";
    EXPECT_EQ(SealedFileKeychain(elsewhere).add("Vesk", "A", "x"), KeychainStatus::denied);
}

TEST_F(SealedFileTroubleTests, AUserWithoutAHomeHasNoStore) {
    SealedFileOptions nowhere = options();
    nowhere.folder = "";
    EXPECT_EQ(SealedFileKeychain(nowhere).copy("Vesk", "A").status, KeychainStatus::unavailable);
    EXPECT_EQ(SealedFileKeychain(nowhere).add("Vesk", "A", "x"), KeychainStatus::unavailable);
}

} // namespace
} // namespace vesk::test
