#pragma once

#include "VeskSupport/TextFolding.hpp"

#include <optional>
#include <string>

namespace vesk::VeskContactsOperations {

/// The label to store for one that a person wrote: one that every address book knows where it names one ("Office" is
/// work), else the trimmed text, and `defaultLabel` where that is empty.
std::string nativeLabel(const std::string& label, const std::string& defaultLabel, const TextFolding& folding);

/// A stored label as people read it; "other" where there is none.
std::string readableLabel(const std::optional<std::string>& label);

} // namespace vesk::VeskContactsOperations
