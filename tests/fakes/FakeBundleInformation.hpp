#pragma once

#include "VeskPlatform/BundleInformation.hpp"
#include "VeskPlatform/CloudAccount.hpp"

#include <map>
#include <vector>

namespace vesk::test {

/// Dictionaries by path.
class FakeBundleInformation : public BundleInformation {
public:
    std::map<std::string, JsonValue::Object> dictionaries, granted;

    JsonValue::Object informationDictionary(const Bundle& bundle) override { return at(dictionaries, bundle.path); }
    JsonValue::Object entitlements(const std::string& path) override { return at(granted, path); }

private:
    static JsonValue::Object at(const std::map<std::string, JsonValue::Object>& all, const std::string& path) {
        const auto found = all.find(path);
        return found == all.end() ? JsonValue::Object{} : found->second;
    }
};

/// An account with containers by identifier, the default one under "default"; records what it is asked for.
class FakeCloudAccount : public CloudAccount {
public:
    bool signedIn = false;
    std::map<std::string, std::string> containers;
    std::vector<std::optional<std::string>> asked;
    std::optional<std::string> drive;

    bool hasIdentityToken() override { return signedIn; }
    std::optional<std::string> drivePath() override { return drive; }
    std::optional<std::string> containerPath(const std::optional<std::string>& identifier) override {
        asked.push_back(identifier);
        const auto found = containers.find(identifier.value_or("default"));
        return found == containers.end() ? std::nullopt : std::optional(found->second);
    }
};

} // namespace vesk::test
