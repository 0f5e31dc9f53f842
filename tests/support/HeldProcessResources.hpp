#pragma once

#include <filesystem>
#include <fstream>
#include <ostream>
#include <set>
#include <string>

namespace vesk::test {

/// What this process holds that a finished piece of work has to give back: descriptors, and children by their numbers,
/// those among them that have ended and were not reaped.
struct HeldProcessResources {
    std::set<std::string> descriptors, children;

    static HeldProcessResources now() {
        namespace fs = std::filesystem;
        HeldProcessResources held;
        for (const auto& entry : fs::directory_iterator("/proc/self/fd"))
            if (fs::is_symlink(entry.symlink_status())) held.descriptors.insert(entry.path().filename());
        for (const auto& thread : fs::directory_iterator("/proc/self/task")) {
            std::ifstream list(thread.path() / "children");
            for (std::string child; list >> child;) held.children.insert(child);
        }
        return held;
    }
    bool operator==(const HeldProcessResources&) const = default;

    friend std::ostream& operator<<(std::ostream& stream, const HeldProcessResources& held) {
        stream << "descriptors:";
        for (const auto& descriptor : held.descriptors) stream << " " << descriptor;
        stream << ", children:";
        for (const auto& child : held.children) stream << " " << child;
        return stream;
    }
};

} // namespace vesk::test
