#pragma once

#include "VeskPlatform/Linux/Vdir/FolderTurn.hpp"

#include <string>
#include <string_view>

namespace vesk::vdir {

/// Makes a new file, whole or not at all, also across a kill or a power cut: the bytes go to a file without a name,
/// are flushed, get their name, and the folder is flushed. Throws PosixError, EEXIST where the name is taken.
void createFileDurably(const std::string& folder, const std::string& name, std::string_view bytes);

/// Replaces a file whole, with the permissions it has, unless its bytes are no longer `expected`: another program's
/// change is never lost. False where they are not, or the file is gone. Takes the turn in the file's folder, and keeps
/// it for a caller that starts over. Throws PosixError; the file is then as it was.
bool replaceFileDurably(const std::string& path, std::string_view expected, std::string_view bytes, FolderTurn& turn);

/// Removes a file unless its bytes are no longer `expected`; false where they are not, or it is gone. Takes the turn as
/// above. Throws PosixError.
bool removeFileDurably(const std::string& path, std::string_view expected, FolderTurn& turn);

/// Makes a folder that holds one file, with both names, or neither; false where the folder's name is taken. The parent
/// exists. Throws PosixError.
bool createFolderDurably(const std::string& parent, const std::string& name, const std::string& fileName,
                         std::string_view bytes);

} // namespace vesk::vdir
