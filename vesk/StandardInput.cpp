#include "vesk/StandardInput.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <cerrno>
#include <unistd.h>

namespace vesk {

std::string readStandardInput(std::uint64_t maximumBytes) {
    constexpr const char* name = "standard input";
    constexpr std::size_t step = std::size_t{1} << 20;
    std::string bytes;
    for (std::size_t filled = 0;;) {
        bytes.resize(filled + step);
        const ssize_t count = ::read(STDIN_FILENO, bytes.data() + filled, step);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) throw PosixError(errno, name);
        filled += static_cast<std::size_t>(count);
        if (filled > maximumBytes) throw PosixError(EFBIG, name);
        if (count > 0) continue;
        bytes.resize(filled);
        return bytes;
    }
}

std::string readTextFromStandardInput(std::uint64_t maximumBytes) {
    std::string text = readStandardInput(maximumBytes);
    if (text.ends_with("\r\n"))
        text.resize(text.size() - 2);
    else if (text.ends_with('\n'))
        text.pop_back();
    if (!isWellFormedUtf8(text)) throw PosixError(EILSEQ, "standard input");
    return text;
}

} // namespace vesk
