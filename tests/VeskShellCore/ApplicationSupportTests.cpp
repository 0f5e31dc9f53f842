#include "VeskShellCore/ApplicationSupport.hpp"
#include "tests/fakes/FakeBasics.hpp"

#include <gtest/gtest.h>

namespace vesk {
namespace {

TEST(ApplicationSupport, VariableThenHome) {
    const struct {
        std::optional<std::string> variable;
        std::string home;
        std::optional<std::string> directory, item;
    } cases[] = {
        {std::nullopt, "/home/dana", "/home/dana/Library/Application Support/Vesk",
         "/home/dana/Library/Application Support/Vesk/a/b"},
        {" \t\n", "/home/dana", "/home/dana/Library/Application Support/Vesk",
         "/home/dana/Library/Application Support/Vesk/a/b"},
        {" /x y \n", "/home/dana", "/x y", "/x y/a/b"},
        {"/x/", "/home/dana", "/x/", "/x/a/b"},
        {"/", "", "/", "/a/b"},
        {std::nullopt, "/", "/Library/Application Support/Vesk", "/Library/Application Support/Vesk/a/b"},
        {std::nullopt, "", std::nullopt, std::nullopt},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.variable.value_or("(unset)") + " " + c.home);
        test::FakeEnvironment environment;
        environment.home = c.home;
        if (c.variable) environment.variables["VESK_APP_SUPPORT_DIR"] = *c.variable;
        EXPECT_EQ(applicationSupportDirectory(environment), c.directory);
        EXPECT_EQ(applicationSupportItem(environment, "a/b"), c.item);
    }
}

} // namespace
} // namespace vesk
