#pragma once

#include <CoreFoundation/CoreFoundation.h>
#include <CoreServices/AppleEvents.h>
