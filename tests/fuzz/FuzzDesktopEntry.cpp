// Desktop files: names and commands come out of anything, and a command has no empty program.

#include "VeskPlatform/Linux/Desktop/DesktopEntry.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const vesk::DesktopEntry entry({reinterpret_cast<const char*>(data), size});
    (void)entry.localizedText("Name", {"de_DE", "de"});
    (void)entry.isTrue("NoDisplay");
    const auto command = vesk::startCommand(entry, "/usr/share/applications/a.desktop", {"de"});
    if (!command.empty() && command.front().empty()) std::abort();
    return 0;
}
