#pragma once

#include "VeskPlatform/Linux/Secrets/SealingKey.hpp"

#include <memory>
#include <string>

namespace vesk {

enum class FinalLink { followed, refused };

/// The bytes of a small file that holds a secret; none where nothing is there. Throws KeychainFailure, `denied` where
/// it is another user's or others may read or write it: whoever else knows it could open what it protects.
std::unique_ptr<WipedText> readPrivateFile(const std::string& path, FinalLink link);

} // namespace vesk
