#pragma once

#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <string>

namespace vesk::vdir {

/// The turn of one run of ours among others that replace files of the same folder (flock(2)); it ends with this object.
/// While one of them puts a faster program's file back, the folder shows what is not meant to stay, and another that
/// took it for the truth would lose what was put back. A change that was outrun starts over with its turn kept: what it
/// reads then, no other run of ours changes before it has replaced it.
class FolderTurn {
public:
    /// Opens the folder and waits for the turn, unless it has it already; a turn in another folder ends. A run that is
    /// stopped meanwhile holds nobody up for longer than two seconds, and file systems that know no such locks do
    /// without. Throws PosixError where the folder cannot be opened.
    void take(const std::string& path);

private:
    FileDescriptor folder_;
    bool isTaken_ = false;
};

} // namespace vesk::vdir
