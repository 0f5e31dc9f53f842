#pragma once

#include "VeskPlatform/FileManager.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <string>

namespace vesk {

/// Removes what is there, if anything is and it can be.
inline void removeIgnoringErrors(FileManager& files, const std::string& path) {
    try {
        files.removeFile(path);
    } catch (const ErrorRecord&) { // whatever comes next tells
    }
}

} // namespace vesk
