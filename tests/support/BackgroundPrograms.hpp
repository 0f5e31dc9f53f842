#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

namespace vesk::test {

/// The path of a system program. Throws std::runtime_error with the package to install where it is not there.
std::string requiredProgram(const std::string& name, const std::string& package);

/// Starts a program with this process's environment, all three streams /dev/null. A child of this process.
pid_t startInBackground(const std::vector<std::string>& arguments);

/// Whether somebody listens at a local socket, whose file is there a moment before.
bool isListening(const std::string& path);

} // namespace vesk::test
