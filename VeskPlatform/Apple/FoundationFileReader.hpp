#pragma once

#include "VeskPlatform/FileReader.hpp"

namespace vesk {

/// Files through NSData. Failures of the reading itself are the system's own.
class FoundationFileReader : public FileReader {
public:
    std::string contents(const std::string& path, std::uint64_t maximumBytes) override;
};

} // namespace vesk
