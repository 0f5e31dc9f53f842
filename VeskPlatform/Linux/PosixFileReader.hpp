#pragma once

#include "VeskPlatform/FileReader.hpp"

namespace vesk {

class PosixFileReader : public FileReader {
public:
    std::string contents(const std::string& path, std::uint64_t maximumBytes) override;
};

} // namespace vesk
