// Mail messages, whole and cut off: headers do not depend on what stands behind them, and texts are shown on one line.

#include "VeskPlatform/Linux/Maildir/GmimeMessageReader.hpp"
#include "VeskPlatform/Linux/Maildir/HeaderBlock.hpp"
#include "VeskPlatform/Linux/Maildir/HtmlText.hpp"
#include "VeskPlatform/Linux/Maildir/MessageFile.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace vesk::maildir;

void requireOneRow(const std::string& text) {
    if (onOneRow(text).find_first_of(std::string_view("\n\r\x1f\0", 4)) != std::string::npos) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const GmimeMessageReader reader;
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    const MessageHeaders headers = reader.headers(bytes);
    for (const std::string& field : {headers.messageId, headers.sender, headers.subject}) requireOneRow(field);
    if (reader.headers(bytes.substr(0, endOfHeaders(bytes))) != headers) std::abort();
    const MessageText text = reader.text(bytes);
    requireOneRow(text.isHtml ? htmlText(text.text, 1000) : text.text);
    return 0;
}
