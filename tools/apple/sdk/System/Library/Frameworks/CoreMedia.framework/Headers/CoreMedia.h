#pragma once

#include <CoreMedia/CMTime.h>
#include <CoreMedia/CMTimeRange.h>
