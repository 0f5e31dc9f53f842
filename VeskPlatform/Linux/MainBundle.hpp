#pragma once

#include <string>

namespace vesk {

/// The file that this process runs, links resolved.
std::string runningExecutable();

} // namespace vesk
