#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreGraphics/CoreGraphics.h>
#include <ImageIO/CGImageDestination.h>
#include <ImageIO/CGImageSource.h>
#include <ImageIO/ImageIOBase.h>
