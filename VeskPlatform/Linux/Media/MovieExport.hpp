#pragma once

#include "VeskPlatform/Linux/Media/ClipComposition.hpp"

namespace vesk {

/// Encodes a composition of clips: H.264 of the High profile and AAC.
class MovieExport : public ExportSession {
public:
    explicit MovieExport(const ClipComposition& composition) : composition_(composition) {}

    Task<ExportStatus> exportMovie(ExportJob job) override;
    std::exception_ptr error() override { return error_; }

private:
    const ClipComposition& composition_;
    std::exception_ptr error_;
};

} // namespace vesk
