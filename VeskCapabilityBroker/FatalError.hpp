#pragma once

#include "VeskPlatform/ByteOutput.hpp"

#include <exception>
#include <string>

namespace vesk {

/// "[capability-broker] fatal error " and the rendering of any exception, as one line of well-formed text.
std::string fatalErrorLine(const std::exception_ptr& failure);

/// Writes that line. Where not even that can be done, the exit status has to tell.
void writeFatalError(const std::exception_ptr& failure, ByteOutput& errorOutput) noexcept;

} // namespace vesk
