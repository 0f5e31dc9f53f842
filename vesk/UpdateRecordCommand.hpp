#pragma once

#include "VeskPlatform/Platform.hpp"
#include "vesk/CommandLine.hpp"

#include <string>

namespace vesk {

/// Runs a verb of `vesk update-record` and returns JSON: the record, empty where there is none or it was removed.
std::string runUpdateRecord(const UpdateRecordCommand& command, Platform& platform);

} // namespace vesk
