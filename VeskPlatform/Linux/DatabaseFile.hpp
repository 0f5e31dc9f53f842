#pragma once

#include <string>

namespace vesk {

/// Makes `folder` (mode 0700, with those above it) and in it the file `path`, empty, where they are missing; a file
/// that is there gets mode 0600 where it can be had. SQLite would give a new file the process's mask, and the file is
/// never opened here, since closing it would drop the locks that this process holds on it. Throws PosixError, ENOENT
/// for an empty folder.
void prepareDatabaseFile(const std::string& folder, const std::string& path);

} // namespace vesk
