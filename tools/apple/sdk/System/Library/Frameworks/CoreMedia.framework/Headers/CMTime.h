#pragma once

#include <CoreFoundation/CoreFoundation.h>

typedef int64_t CMTimeValue;
typedef int32_t CMTimeScale;
typedef int64_t CMTimeEpoch;
typedef int32_t CMPersistentTrackID;

enum : CMPersistentTrackID { kCMPersistentTrackID_Invalid = 0 };

typedef CF_OPTIONS(uint32_t, CMTimeFlags) {
    kCMTimeFlags_Valid = 1 << 0,
    kCMTimeFlags_HasBeenRounded = 1 << 1,
    kCMTimeFlags_PositiveInfinity = 1 << 2,
    kCMTimeFlags_NegativeInfinity = 1 << 3,
    kCMTimeFlags_Indefinite = 1 << 4,
    kCMTimeFlags_ImpliedValueFlagsMask = kCMTimeFlags_PositiveInfinity | kCMTimeFlags_NegativeInfinity
                                         | kCMTimeFlags_Indefinite,
};

#pragma pack(push, 4)
/// `value / timescale` seconds where the flags say so.
typedef struct {
    CMTimeValue value;
    CMTimeScale timescale;
    CMTimeFlags flags;
    CMTimeEpoch epoch;
} CMTime;
#pragma pack(pop)

#define CMTIME_IS_VALID(time) ((Boolean)(((time).flags & kCMTimeFlags_Valid) != 0))
#define CMTIME_IS_NUMERIC(time)                                                                                        \
    ((Boolean)(((time).flags & (kCMTimeFlags_Valid | kCMTimeFlags_ImpliedValueFlagsMask)) == kCMTimeFlags_Valid))

CF_EXPORT const CMTime kCMTimeZero;
CF_EXPORT CMTime CMTimeMake(int64_t value, int32_t timescale);
