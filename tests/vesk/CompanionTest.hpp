#pragma once

#include "VeskSupport/Json.hpp"
#include "tests/support/ProgramRun.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vesk::test {

inline const std::string companionProgram = VESK_BINARY_DIR "/bin/vesk";

/// The built companion in a fresh folder: its home, with the consent database in `state`.
class CompanionTest : public ::testing::Test {
protected:
    CompanionTest() { program.environment["VESK_STATE_DIR"] = state(); }

    ProgramRun program{companionProgram};

    std::string state() const { return (program.folder() / "state").string(); }
    std::string database() const { return state() + "/consent.sqlite"; }
    ProgramResult vesk(const std::vector<std::string>& arguments) const { return program.run(arguments); }

    /// The JSON of a run that must succeed in silence.
    JsonValue json(const std::vector<std::string>& arguments) const {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 0) << result;
        EXPECT_EQ(result.errorOutput, "") << result;
        return parseJson(result.output);
    }
    /// Runs what must fail with this one line and print nothing.
    void expectFailure(const std::vector<std::string>& arguments, const std::string& description) const {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 1) << result;
        EXPECT_EQ(result.output, "") << result;
        EXPECT_EQ(result.errorOutput, "vesk: " + description + "\n") << result;
    }
    /// Runs what must print the usage of `command` and what was wrong.
    void expectUsage(const std::vector<std::string>& arguments, const std::string& command,
                     const std::string& wrong) const {
        const ProgramResult result = vesk(arguments);
        EXPECT_EQ(result.status, 2) << result;
        EXPECT_EQ(result.output, "") << result;
        EXPECT_THAT(result.errorOutput, ::testing::HasSubstr("Usage: " + command + " ")) << result;
        EXPECT_THAT(result.errorOutput, ::testing::EndsWith("\nvesk: " + wrong + "\n")) << result;
    }
};

inline const JsonValue& at(const JsonValue& value, const std::string& key) {
    return std::get<JsonValue::Object>(value.value).at(key);
}
inline const JsonValue::Array& listAt(const JsonValue& value, const std::string& key) {
    return std::get<JsonValue::Array>(at(value, key).value);
}
inline std::string textAt(const JsonValue& value, const std::string& key) {
    return std::get<std::string>(at(value, key).value);
}
inline bool has(const JsonValue& value, const std::string& key) {
    return std::get<JsonValue::Object>(value.value).contains(key);
}

} // namespace vesk::test
