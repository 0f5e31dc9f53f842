#pragma once

#include <string>

namespace vesk {

/// Makes `folder` (mode 0700) and in it the file `path` (mode 0600) where they are missing, and tightens a file that
/// others may use. SQLite would give the file the process's mask. An existing file is never opened, since closing it
/// would drop the locks that this process holds on it. Throws PosixError.
void preparePrivateDatabaseFile(const std::string& folder, const std::string& path);

} // namespace vesk
