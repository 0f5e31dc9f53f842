#pragma once

#include <string>

namespace vesk {

/// A name that listings pass over, for what gets its own name only when it is whole.
std::string hiddenName();

/// Gives an item of an open folder a name in it that nothing has. False where it cannot, with errno: EEXIST where the
/// name is taken. Mounted drives that know neither renaming without replacing nor hard links are looked at just before
/// the renaming instead.
bool moveBeside(int folder, const std::string& hidden, const std::string& name);

/// Whether an errno is what file systems answer that lack a call, a flag or hard links.
bool isNotSupported(int errnoValue);

} // namespace vesk
