#pragma once

#include "VeskShellCore/ICloudError.hpp"
#include "tests/fakes/FakePlatform.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>

namespace vesk::test {

/// A build that is set up for the cloud, with the container "c" and a user who is signed in; the drive is "/drive".
class CloudWorld : public ::testing::Test {
protected:
    CloudWorld() {
        info = {{"VeskICloudContainerIdentifier", {std::string("c")}}};
        const JsonValue own{JsonValue::Array{{std::string("c")}}};
        platform.fakeBundleInformation.granted[platform.bundle.path] = {
            {"com.apple.developer.icloud-container-identifiers", own}};
        platform.fakeCloudAccount.signedIn = true;
        platform.fakeCloudAccount.drive = "/drive";
        platform.fakeCloudAccount.containers["c"] = "/containers/c";
        files.folders.insert("/drive");
    }

    FakePlatform platform;
    FakeFileManager& files = platform.fakeFileManager;
    JsonValue::Object& info = platform.fakeBundleInformation.dictionaries[platform.bundle.path];

    /// A file with its text, for both ports that read.
    void put(const std::string& path, const std::string& text) {
        files.put(path, text);
        platform.fakeFileReader.files[path] = text;
    }

    /// Runs what must fail with an error of the cloud files.
    template <class Call> static void expectCloudFailure(std::int64_t code, const std::string& text, Call call) {
        try {
            call();
            ADD_FAILURE() << "no failure: " << text;
        } catch (const ErrorRecord& error) {
            EXPECT_EQ(error.domain(), "VeskICloudOperations");
            EXPECT_EQ(error.code(), code);
            EXPECT_EQ(error.description(), text);
        }
    }
};

} // namespace vesk::test
