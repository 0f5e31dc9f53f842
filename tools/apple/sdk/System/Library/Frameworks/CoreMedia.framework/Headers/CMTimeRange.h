#pragma once

#include <CoreMedia/CMTime.h>

#pragma pack(push, 4)
typedef struct {
    CMTime start;
    CMTime duration;
} CMTimeRange;
#pragma pack(pop)

CF_EXPORT CMTimeRange CMTimeRangeMake(CMTime start, CMTime duration);
