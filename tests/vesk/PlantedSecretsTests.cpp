// Secrets are planted, and looked for wherever they must not be: in what is printed, in the log, in files, and in the
// arguments and the environment of every process.

#include "tests/support/PrivateKeyring.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <algorithm>
#include <csignal>
#include <fstream>
#include <future>
#include <sys/stat.h>

namespace vesk::test {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::Not;

const std::string planted = "planted-0f3a7c";

std::string contents(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

class PlantedSecrets : public CompanionTest {
protected:
    PlantedSecrets() {
        temporary = program.folder() / "temporary";
        fs::create_directory(temporary);
        program.environment["TMPDIR"] = temporary;
    }

    fs::path temporary;

    ProgramResult set(const std::string& account, const std::string& secret) {
        program.input = secret;
        ProgramResult result = vesk({"secrets", "set", account});
        program.input.clear();
        return result;
    }
    static void expectClean(const ProgramResult& result) {
        EXPECT_THAT(result.output, Not(HasSubstr(planted))) << result;
        EXPECT_THAT(result.errorOutput, Not(HasSubstr(planted))) << result;
    }
    /// Nothing below the program's home holds it, names of files included, but for `exception`.
    void expectCleanFiles(const fs::path& exception = {}) const {
        for (const auto& entry : fs::recursive_directory_iterator(program.folder())) {
            EXPECT_THAT(entry.path().string(), Not(HasSubstr(planted)));
            if (!entry.is_regular_file() || entry.path() == exception) continue;
            EXPECT_THAT(contents(entry.path()), Not(HasSubstr(planted))) << entry.path();
        }
        EXPECT_TRUE(fs::is_empty(temporary));
    }
    void spoilStore() { std::ofstream(state() + "/secrets.sqlite", std::ios::trunc) << std::string(5000, 'n'); }
};

TEST_F(PlantedSecrets, AreNotInWhatSettingPrintsOrLeaves) {
    expectClean(set("A", planted));
    expectClean(set("A", planted + "-2"));
    expectClean(vesk({"secrets", "delete", "A"}));
    expectCleanFiles();
}

TEST_F(PlantedSecrets, AreNotInWhatDamagedStoresPrint) {
    set("A", "x");
    spoilStore();
    const ProgramResult failed = set("A", planted);
    EXPECT_EQ(failed.status, 1) << failed;
    expectClean(failed);
    expectCleanFiles();
}

TEST_F(PlantedSecrets, AreNotInWhatLockedStoresPrint) {
    set("A", planted);
    ::chmod((state() + "/secrets.key").c_str(), 0644);
    expectClean(set("A", planted));
    expectClean(set("B", planted));
    expectClean(vesk({"secrets", "read", "A"}));
    expectCleanFiles();
}

TEST_F(PlantedSecrets, AreNotInTheErrorOfTextThatIsNone) {
    expectClean(set("A", planted + "\xff"));
    expectCleanFiles();
}

TEST_F(PlantedSecrets, AreNotInPresenceAndDoctor) {
    set("ZAI_API_KEY", planted);
    expectClean(vesk({"secrets", "presence"}));
    expectClean(vesk({"doctor"}));
    expectClean(vesk({"doctor", "--json"}));
}

TEST_F(PlantedSecrets, AreInAnExportsFileAndNowhereElse) {
    set("ZAI_API_KEY", planted);
    expectClean(vesk({"secrets", "export", "archive"}));
    EXPECT_THAT(contents(program.folder() / "archive"), HasSubstr(planted));
    expectCleanFiles(program.folder() / "archive");
    expectClean(vesk({"secrets", "export", "missing/archive"}));
    expectCleanFiles(program.folder() / "archive");
}

TEST_F(PlantedSecrets, AreNotInWhatARehearsalPrintsOrLeaves) {
    set("ZAI_API_KEY", planted);
    vesk({"secrets", "export", "archive"});
    expectClean(vesk({"secrets", "rehearse", "archive"}));
    expectCleanFiles(program.folder() / "archive");
    spoilStore();
    const ProgramResult failed = vesk({"secrets", "rehearse", "archive"});
    EXPECT_EQ(failed.status, 1) << failed;
    expectClean(failed);
    expectCleanFiles(program.folder() / "archive");
}

TEST_F(PlantedSecrets, AreNotInTheErrorOfABrokenArchive) {
    std::ofstream(program.folder() / "archive")
        << R"(<plist version="1.0"><dict><key>schemaVersion</key><string>)" << planted << "</string></dict></plist>";
    const ProgramResult failed = vesk({"secrets", "rehearse", "archive"});
    EXPECT_EQ(failed.status, 1) << failed;
    expectClean(failed);
}

TEST_F(PlantedSecrets, PassphrasesAreNowhereEither) {
    const fs::path file = program.folder() / "passphrase";
    std::ofstream(file) << planted;
    ::chmod(file.c_str(), 0600);
    program.environment["VESK_SECRETS_PASSPHRASE_FILE"] = file;
    expectClean(set("A", "x"));
    expectClean(vesk({"secrets", "read", "A"}));
    expectClean(vesk({"doctor", "--json"}));
    ::chmod(file.c_str(), 0644);
    expectClean(vesk({"secrets", "read", "A"}));
    expectCleanFiles(file);
}

/// What /proc tells of every process that this test started, by its bus.
std::vector<std::string> traces(const std::string& address) {
    std::vector<std::string> result;
    for (const auto& entry : fs::directory_iterator("/proc")) {
        const std::string environment = contents(entry.path() / "environ");
        if (environment.find(address) != std::string::npos)
            result.push_back(contents(entry.path() / "cmdline") + environment);
    }
    return result;
}

TEST_F(PlantedSecrets, AreInNoProcessesArgumentsOrEnvironment) {
    PrivateKeyring keyring;
    program.environment["DBUS_SESSION_BUS_ADDRESS"] = keyring.address();
    ::kill(keyring.process(), SIGSTOP); // holds the companion in the middle of its call
    auto running = std::async(std::launch::async, [&] { return set("A", planted); });
    const auto isCompanion = [](const std::string& trace) {
        return trace.find("secrets") != std::string::npos && trace.find("bin/vesk") != std::string::npos;
    };
    std::vector<std::string> found;
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
    while (std::ranges::none_of(found, isCompanion) && std::chrono::steady_clock::now() < end)
        found = traces(keyring.address());
    EXPECT_TRUE(std::ranges::any_of(found, isCompanion));
    for (const std::string& trace : found) EXPECT_THAT(trace, Not(HasSubstr(planted)));
    ::kill(keyring.process(), SIGCONT);
    const ProgramResult result = running.get();
    EXPECT_EQ(result.status, 0) << result;
    expectClean(result);
    expectCleanFiles();
}

} // namespace
} // namespace vesk::test
