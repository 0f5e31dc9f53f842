#pragma once

#include <string>
#include <vector>

namespace vesk {

/// A place that only programs with access to the whole disk can read.
struct ProtectedPlace {
    /// Absolute.
    std::string path;
    /// What messages call it.
    std::string label;

    bool operator==(const ProtectedPlace&) const = default;
};

/// The places of the system to which access is granted apart. Neither call fails or looks whether a place is there.
class FilePlaces {
public:
    virtual ~FilePlaces() = default;
    /// In the order in which they are tried. `homeDirectory` is absolute.
    virtual std::vector<ProtectedPlace> protectedPlaces(const std::string& homeDirectory) = 0;
    /// Absolute paths of the folders that are guarded one by one, in the order in which they are tried.
    virtual std::vector<std::string> guardedFolders(const std::string& homeDirectory) = 0;
};

} // namespace vesk
