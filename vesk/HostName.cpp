#include "vesk/HostName.hpp"

#include <sys/utsname.h>

namespace vesk {

std::optional<std::string> hostName() {
    utsname system{};
    if (::uname(&system) != 0 || system.nodename[0] == '\0') return std::nullopt;
    return std::string(system.nodename);
}

} // namespace vesk
