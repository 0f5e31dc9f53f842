#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace vesk {

/// Why a store of secrets could not do what it was asked: a status of KeychainStatus, and a sentence for the log and
/// the doctor, which holds no secret. It does not leave the adapters.
struct KeychainFailure : std::runtime_error {
    KeychainFailure(std::int32_t failureStatus, const std::string& text)
        : std::runtime_error(text), status(failureStatus) {}

    std::int32_t status;
};

} // namespace vesk
