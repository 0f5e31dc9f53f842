#include "VeskPlatform/Linux/UnscriptedApplications.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>

namespace vesk {

ScriptRunResult UnscriptedMessages::run(const MessagesScript& script) { throw PosixError(ENOENT, script.program); }

} // namespace vesk
