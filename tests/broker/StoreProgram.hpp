#pragma once

#include "tests/support/ProgramRun.hpp"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

namespace vesk::test {

/// A broker that is granted a capability, over a store in a folder of its own; nothing of the caller's is read.
class StoreProgram : public testing::Test {
protected:
    /// The store is `folder` below the run's own folder, and `variable` names it to the broker.
    StoreProgram(const std::string& capability, const std::string& variable, const std::string& folder)
        : root(program.folder() / folder) {
        program.deadline = std::chrono::seconds(20);
        program.environment[variable] = root.string();
        for (const auto& [name, part] :
             {std::pair{"VESK_STATE_DIR", "state"}, {"VESK_CACHE_DIR", "cache"}, {"VESK_APP_SUPPORT_DIR", "support"}})
            program.environment[name] = (program.folder() / part).string();
        program.environment["TZ"] = "Europe/Berlin";
        ProgramRun setup(VESK_BINARY_DIR "/bin/vesk");
        setup.environment = program.environment;
        const auto granted = setup.run({"consent", "grant", capability, "--yes"});
        EXPECT_EQ(granted.status, 0) << granted;
    }

    ProgramRun program{VESK_BINARY_DIR "/bin/VeskCapabilityBroker"};
    const std::filesystem::path root;

    /// Writes a file of the store, with its folders.
    void write(const std::string& name, const std::string& bytes) const {
        std::filesystem::create_directories((root / name).parent_path());
        std::ofstream(root / name, std::ios::binary) << bytes;
    }
    static std::string content(const std::filesystem::path& path) {
        std::stringstream text;
        text << std::ifstream(path, std::ios::binary).rdbuf();
        return text.str();
    }
    /// The document that a command prints.
    std::string succeed(const std::vector<std::string>& arguments) const {
        const ProgramResult result = program.run(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.output;
    }
};

} // namespace vesk::test
