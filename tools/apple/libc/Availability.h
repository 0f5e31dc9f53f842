// The system that brought a declaration: API_AVAILABLE(macos(14.0)).
#pragma once

#define __API_AVAILABLE_macos(version) macos, introduced = version
#define API_AVAILABLE(platform) __attribute__((availability(__API_AVAILABLE_##platform)))
