#pragma once

#include "tests/fakes/FakePlatform.hpp"

#include <string>
#include <vector>

namespace vesk::test {

/// The lines of the log so far, without their times.
inline std::vector<std::string> loggedLines(FakePlatform& platform) {
    platform.fakeLogQueue.drain();
    std::vector<std::string> lines;
    for (const auto& [path, text] : platform.fakePrivateFiles.files)
        for (std::size_t start = 0, end = 0; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
            const std::string line = text.substr(start, end - start);
            lines.push_back(line.substr(line.find("] ") + 2));
        }
    return lines;
}

} // namespace vesk::test
