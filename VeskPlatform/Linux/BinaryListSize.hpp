#pragma once

#include <string_view>

namespace vesk {

/// Whether a binary property list ("bplist00") stays small when each of its references becomes a value of its own, as
/// the library makes it: two hundred bytes whose arrays name one another twice over would fill all memory. Not for
/// lists that contain themselves, are nested too deeply or point beyond their end.
bool binaryListStaysSmall(std::string_view bytes);

} // namespace vesk
