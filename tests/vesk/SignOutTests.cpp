#include "VeskPlatform/Linux/SqliteUserDefaults.hpp"
#include "tests/vesk/CompanionTest.hpp"

#include <fstream>

namespace vesk::test {
namespace {

constexpr const char* nothing = "{\n\n}\n";

std::string transaction(const std::string& phase, bool installed, bool running) {
    const auto word = [](bool value) { return std::string(value ? "true" : "false"); };
    return "{\n  \"phase\" : \"" + phase + "\",\n  \"resumeIntent\" : {\n    \"wasInstalled\" : " + word(installed)
           + ",\n    \"wasRunning\" : " + word(running) + "\n  }\n}\n";
}

class SignOutProgram : public CompanionTest {
protected:
    std::string output(std::vector<std::string> arguments) const {
        arguments.insert(arguments.begin(), "sign-out");
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return result.output;
    }
};

TEST_F(SignOutProgram, GoesThroughItsPhasesAndIsForgotten) {
    EXPECT_EQ(output({"show"}), nothing);
    EXPECT_EQ(output({"begin", "--installed", "--running"}), transaction("stopping", true, true));
    EXPECT_EQ(output({"show"}), transaction("stopping", true, true));
    EXPECT_EQ(output({"advance", "assistant_stopped"}), transaction("assistant_stopped", true, true));
    EXPECT_EQ(output({"advance", "signed_out"}), transaction("signed_out", true, true));
    EXPECT_EQ(output({"show"}), transaction("signed_out", true, true));
    EXPECT_EQ(output({"finish"}), nothing);
    EXPECT_EQ(output({"show"}), nothing);
    EXPECT_EQ(output({"finish"}), nothing);
}

TEST_F(SignOutProgram, ARunningAssistantIsAnInstalledOne) {
    EXPECT_EQ(output({"begin", "--running"}), transaction("stopping", true, true));
    EXPECT_EQ(output({"begin", "--installed"}), transaction("stopping", true, false));
    EXPECT_EQ(output({"begin"}), transaction("stopping", false, false));
}

TEST_F(SignOutProgram, AnyPhaseMayFollowAny) {
    output({"begin", "--installed"});
    for (const char* phase : {"signed_out", "stopping", "assistant_stopped"})
        EXPECT_EQ(output({"advance", phase}), transaction(phase, true, false));
}

TEST_F(SignOutProgram, WithoutABeginningThereIsNothingToAdvance) {
    expectFailure({"sign-out", "advance", "signed_out"}, "No sign-out has begun.");
    EXPECT_EQ(output({"show"}), nothing);
}

TEST_F(SignOutProgram, AnUnknownPhaseThatIsStoredReadsAsNothing) {
    SqliteUserDefaults(state()).setData("app.veskhq.vesk.auth.sign-out-transaction",
                                        R"({"phase":"done","resumeIntent":{"wasInstalled":true,"wasRunning":true}})");
    EXPECT_EQ(output({"show"}), nothing);
    expectFailure({"sign-out", "advance", "signed_out"}, "No sign-out has begun.");
    EXPECT_EQ(output({"begin"}), transaction("stopping", false, false));
}

TEST_F(SignOutProgram, WhatCannotBeKeptIsTold) {
    std::filesystem::create_directory(state());
    std::ofstream(state() + "/defaults.sqlite") << "this is no database, and long enough to be seen as none";
    expectFailure({"sign-out", "begin"}, "The sign-out cannot be kept in the state folder.");
    EXPECT_EQ(output({"show"}), nothing);
}

TEST_F(SignOutProgram, AWrongCommandLineShowsItsUsage) {
    expectUsage({"sign-out", "advance", "done"}, "vesk sign-out advance", "Unknown phase: done");
    expectUsage({"sign-out", "advance", "Stopping"}, "vesk sign-out advance", "Unknown phase: Stopping");
    expectUsage({"sign-out"}, "vesk sign-out", "A subcommand is required");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"sign-out", "advance"}, {"sign-out", "show", "--running"}, {"sign-out", "end"}})
        EXPECT_EQ(vesk(arguments).status, 2) << arguments.back();
    EXPECT_FALSE(std::filesystem::exists(state()));
}

} // namespace
} // namespace vesk::test
