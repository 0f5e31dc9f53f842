#include "VeskPlatform/Linux/Maildir/GmimeMessageReader.hpp"

#include "VeskPlatform/Linux/Maildir/AddressGroups.hpp"
#include "VeskPlatform/Linux/Maildir/GmimeTextParts.hpp"
#include "VeskPlatform/Linux/Maildir/HeaderBlock.hpp"

#include <algorithm>

namespace vesk::maildir {
namespace {

using namespace gmime;

/// What the parser may have. C strings end at a zero byte, which has no business in mail: a blank stands in for it.
std::string harmless(std::string_view bytes) {
    std::string result(bytes);
    std::ranges::replace(result, '\0', ' ');
    flattenAddressGroups(result);
    return result;
}

Object<GMimeMessage> parsed(const std::string& bytes, GMimeParserOptions* options) {
    const Object<GMimeStream> stream(g_mime_stream_mem_new_with_buffer(bytes.data(), bytes.size()));
    const Object<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    return Object<GMimeMessage>(g_mime_parser_construct_message(parser.get(), options));
}

GMimeHeader* header(GMimeMessage* message, const char* name) {
    return g_mime_header_list_get_header(g_mime_object_get_header_list(GMIME_OBJECT(message)), name);
}

std::string textOf(GMimeMessage* message, const char* name) {
    GMimeHeader* found = header(message, name);
    const char* value = found != nullptr ? g_mime_header_get_value(found) : nullptr;
    return value != nullptr ? value : "";
}

std::string withoutBrackets(std::string text) {
    std::erase_if(text, [](char c) { return c == '<' || c == '>' || static_cast<unsigned char>(c) <= ' '; });
    return text;
}

std::string messageIdOf(GMimeMessage* message) {
    const char* id = g_mime_message_get_message_id(message);
    return withoutBrackets(id != nullptr && *id != '\0' ? id : textOf(message, "Message-ID"));
}

std::string shown(InternetAddress* address) {
    const char* name = internet_address_get_name(address);
    std::string label = name != nullptr ? name : "";
    if (!INTERNET_ADDRESS_IS_MAILBOX(address)) return label;
    const char* box = internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address));
    std::string bare = box != nullptr ? box : "";
    return label.empty() ? bare : bare.empty() ? label : label + " <" + bare + ">";
}

std::string senderOf(GMimeMessage* message) {
    InternetAddressList* list = g_mime_message_get_from(message);
    std::string result;
    for (int i = 0; i < internet_address_list_length(list); ++i) {
        const std::string one = shown(internet_address_list_get_address(list, i));
        result += (result.empty() || one.empty() ? "" : ", ") + one;
    }
    return result.empty() ? textOf(message, "From") : result;
}

std::optional<Instant> instantOf(GDateTime* date) {
    if (date == nullptr) return std::nullopt;
    return Instant(std::chrono::seconds(g_date_time_to_unix(date)));
}

/// The date stands behind the last semicolon (RFC 5321, section 4.4).
std::optional<Instant> dateOfReceived(GMimeMessage* message) {
    GMimeHeader* received = header(message, "Received");
    const char* raw = received != nullptr ? g_mime_header_get_raw_value(received) : nullptr;
    const std::string value = raw != nullptr ? raw : "";
    const std::size_t semicolon = value.rfind(';');
    if (semicolon == std::string::npos) return std::nullopt;
    GDateTime* date = g_mime_utils_header_decode_date(value.c_str() + semicolon + 1);
    const auto instant = instantOf(date);
    if (date != nullptr) g_date_time_unref(date);
    return instant;
}

} // namespace

GmimeMessageReader::GmimeMessageReader() : options_(nullptr) {
    g_mime_init();
    options_ = g_mime_parser_options_new();
    const char* charsets[] = {"utf-8", "windows-1252", nullptr};
    g_mime_parser_options_set_fallback_charsets(options_, charsets);
}

GmimeMessageReader::~GmimeMessageReader() { g_mime_parser_options_free(options_); }

MessageHeaders GmimeMessageReader::headers(std::string_view bytes) const {
    const auto message = parsed(harmless(bytes.substr(0, endOfHeaders(bytes))) + "\n\n", options_);
    if (message == nullptr) return {};
    MessageHeaders result{messageIdOf(message.get()), senderOf(message.get()), textOf(message.get(), "Subject"),
                          dateOfReceived(message.get())};
    if (!result.date) result.date = instantOf(g_mime_message_get_date(message.get()));
    return result;
}

MessageText GmimeMessageReader::text(std::string_view bytes) const {
    const std::string source = harmless(bytes);
    const auto message = parsed(source, options_);
    if (message == nullptr) return {};
    for (GMimePart* part : textParts(message.get())) {
        MessageText text = textOfPart(part, source.size());
        if (text.found) return text;
    }
    return {};
}

} // namespace vesk::maildir
