#include "VeskPlatform/Portable/ExecutableBundle.hpp"

#include <gtest/gtest.h>
#include <optional>
#include <string>

namespace vesk::test {
namespace {

TEST(ExecutableBundle, BelongsToTheApplicationAround) {
    const struct {
        const char* executable;
        const char* bundle;
        std::optional<std::string> resources;
    } cases[] = {
        {"/opt/vesk/bin/vesk", "/opt/vesk/bin", std::nullopt},
        {"/A/Vesk.app/Contents/MacOS/Vesk", "/A/Vesk.app", "/A/Vesk.app/Contents/Resources"},
        {"/A/Vesk.app/Contents/Helpers/b", "/A/Vesk.app", "/A/Vesk.app/Contents/Resources"},
        {"/A/Vesk.app/Contents/Helpers/in/b", "/A/Vesk.app", "/A/Vesk.app/Contents/Resources"},
        {"/A/Vesk.app/Contents/Other/b", "/A/Vesk.app/Contents/Other", std::nullopt},
        {"/A/Vesk.app/b", "/A/Vesk.app", std::nullopt},
        {"/A/Out.app/Contents/Helpers/In.app/Contents/MacOS/b", "/A/Out.app/Contents/Helpers/In.app",
         "/A/Out.app/Contents/Helpers/In.app/Contents/Resources"},
        {"/A/Out.app/Contents/Helpers/In.app/b", "/A/Out.app/Contents/Helpers/In.app", std::nullopt},
        {"/b", "/", std::nullopt},
    };
    for (const auto& c : cases) {
        const Bundle bundle = bundleOfExecutable(c.executable);
        EXPECT_EQ(bundle.path, c.bundle) << c.executable;
        EXPECT_EQ(bundle.resourcesPath, c.resources) << c.executable;
        EXPECT_EQ(bundle.executablePath, c.executable);
    }
}

} // namespace
} // namespace vesk::test
