#pragma once

#include "VeskShellCore/MediaModels.hpp"

#include <string>

// What an input is, told from what is said about it; the file is not looked into.

namespace vesk {

bool isImage(const CapabilityMediaComposeInput& input);
/// An input that is both is an image.
bool isVideo(const CapabilityMediaComposeInput& input);

/// The name that the user knows it by, else the last part of its path.
std::string displayName(const CapabilityMediaComposeInput& input);

} // namespace vesk
