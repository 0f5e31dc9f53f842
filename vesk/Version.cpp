#include "vesk/Version.hpp"

namespace vesk {

VersionRecord builtVersion() { return {VESK_VERSION, VESK_BUILD_NUMBER, VESK_AUTH_ORIGIN, VESK_RELEASE_ORIGIN}; }

} // namespace vesk
