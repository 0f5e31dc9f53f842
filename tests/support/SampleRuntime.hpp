#pragma once

#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <vector>

namespace vesk::test {

/// One run of the sample runtime's daemon, as it wrote it down.
struct SampleCall {
    /// With "bootstrap" or "settings" as the first.
    std::vector<std::string> arguments;
    std::string workingDirectory;
    /// Those of the variables that matter to a runtime which were set.
    std::map<std::string, std::string> environment;
    /// The bytes of standard input; none where the arguments do not ask for it.
    std::optional<std::string> input;
};

/// The packaged runtime of the tests, with a state and a home of its own. What is started in it ends with it.
class SampleRuntime {
public:
    static std::string root() { return VESK_SAMPLE_RUNTIME; }
    static std::string manifestPath() { return root() + "/manifest.json"; }
    static std::string daemonPath() { return root() + "/bin/vesk-daemon"; }

    SampleRuntime() { std::filesystem::create_directories(folder_ / "home"); }

    std::string stateFolder() const { return folder_ / "state"; }
    std::string home() const { return folder_ / "home"; }
    std::string healthPath() const { return home() + "/Library/Application Support/Vesk/data/vesk-health.json"; }

    /// What its processes, or those that start them, need in their environment.
    std::map<std::string, std::string> variables() const {
        return {{"HOME", home()}, {"VESK_SAMPLE_STATE", stateFolder()}};
    }

    /// All runs so far, the earliest first.
    std::vector<SampleCall> calls() const {
        std::vector<std::string> names;
        std::error_code none;
        for (const auto& entry : std::filesystem::directory_iterator(stateFolder() + "/calls", none))
            if (entry.path().extension() == ".json") names.push_back(entry.path().stem());
        std::ranges::sort(names);
        std::vector<SampleCall> calls;
        for (const std::string& name : names) calls.push_back(call("state/calls/" + name));
        return calls;
    }

private:
    SampleCall call(const std::string& name) const {
        const auto record = nlohmann::json::parse(folder_.read(name + ".json"));
        SampleCall call{.arguments = record["arguments"],
                        .workingDirectory = record["workingDirectory"],
                        .environment = record["environment"],
                        .input = {}};
        if (folder_.exists(name + ".input")) call.input = folder_.read(name + ".input");
        return call;
    }

    TemporaryFolder folder_;
};

} // namespace vesk::test
