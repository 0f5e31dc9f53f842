// Property lists, XML and binary: whatever is read can be written as JSON, but for numbers that JSON has no word for.

#include "VeskPlatform/Linux/PropertyList.hpp"

#include "VeskSupport/ErrorRecord.hpp"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto list = vesk::parsePropertyList({reinterpret_cast<const char*>(data), size});
    if (!list) return 0;
    try {
        vesk::writeJson(*list);
    } catch (const vesk::ErrorRecord&) { // not a number
    }
    return 0;
}
