#pragma once

#include <ApplicationServices/AXError.h>
#include <ApplicationServices/AXUIElement.h>
#include <ApplicationServices/AXValue.h>
#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <ImageIO/ImageIO.h>
