#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// The absolute path of the file that is named, or of the one in the application support directory. Throws PosixError
/// where there is none.
std::string updateRecordPath(const std::optional<std::string>& named, Platform& platform);

/// Runs a verb of `vesk update-record` and returns JSON: the record, empty where there is none or it was removed.
std::string runUpdateRecord(const UpdateRecordCommand& command, Platform& platform);

} // namespace vesk
