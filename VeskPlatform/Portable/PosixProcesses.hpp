#pragma once

#include "VeskPlatform/Processes.hpp"

namespace vesk {

class PosixProcesses : public Processes {
public:
    int errorOfNullSignal(std::int32_t processIdentifier) override;
};

} // namespace vesk
