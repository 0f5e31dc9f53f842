#include "vesk/PrintableText.hpp"

#include "VeskSupport/Text.hpp"

namespace vesk {

std::string printable(const std::string& text) {
    std::string result = repairedUtf8(text);
    for (char& c : result)
        if (static_cast<unsigned char>(c) < 0x20 || c == 0x7f) c = ' ';
    return result;
}

} // namespace vesk
