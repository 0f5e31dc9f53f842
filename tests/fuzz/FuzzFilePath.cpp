// Paths and base64: a standardized path stays as it is when it is standardized again, and has no way up.

#include "VeskSupport/Base64.hpp"
#include "VeskSupport/FilePath.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::string path = vesk::standardizedPath(vesk::absolutePath(text, "/home/dana"));
    if (path != vesk::standardizedPath(path) || !path.starts_with('/')) std::abort();
    if ((path + "/").find("/../") != std::string::npos) std::abort();
    (void)vesk::lastPathComponent(path);
    (void)vesk::pathExtension(path);
    if (const auto bytes = vesk::base64Decoded(text); bytes && bytes->size() > text.size()) std::abort();
    return 0;
}
