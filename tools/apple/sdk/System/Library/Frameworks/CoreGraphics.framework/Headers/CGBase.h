#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CGGeometry.h>
#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#define CG_EXTERN CF_EXPORT
