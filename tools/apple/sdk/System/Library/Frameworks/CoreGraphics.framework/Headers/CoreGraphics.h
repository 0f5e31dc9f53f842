#pragma once

#include <CoreGraphics/CGScreenCaptureAccess.h>
