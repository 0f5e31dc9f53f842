#pragma once

#include <CoreVideo/CVPixelBuffer.h>
