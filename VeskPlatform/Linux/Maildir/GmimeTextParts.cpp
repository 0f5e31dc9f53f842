#include "VeskPlatform/Linux/Maildir/GmimeTextParts.hpp"

#include <algorithm>
#include <cstring>
#include <string_view>

namespace vesk::maildir::gmime {
namespace {

/// Deeper parts show nobody anything; mail that nests them so is made to do harm.
constexpr int deepest = 40;

bool isOfType(GMimeObject* object, const char* type, const char* subtype) {
    GMimeContentType* declared = g_mime_object_get_content_type(object);
    return declared != nullptr && g_mime_content_type_is_type(declared, type, subtype) != FALSE;
}

bool isAttached(GMimeObject* object) {
    const char* disposition = g_mime_object_get_disposition(object);
    return disposition != nullptr && g_ascii_strcasecmp(disposition, GMIME_DISPOSITION_ATTACHMENT) == 0;
}

struct Collected {
    std::vector<GMimePart*> shown, calendars, attached;
};

void collect(GMimeObject* object, Collected& parts, int depth);

void collectChildren(GMimeMultipart* multipart, Collected& parts, int depth) {
    std::vector<GMimeObject*> children;
    for (int i = 0; i < g_mime_multipart_get_count(multipart); ++i)
        children.push_back(g_mime_multipart_get_part(multipart, i));
    if (isOfType(GMIME_OBJECT(multipart), "multipart", "alternative"))
        std::ranges::stable_partition(children, [](GMimeObject* child) { return isOfType(child, "text", "plain"); });
    for (GMimeObject* child : children) collect(child, parts, depth + 1);
}

void collect(GMimeObject* object, Collected& parts, int depth) {
    if (object == nullptr || depth > deepest) return;
    if (GMIME_IS_MULTIPART(object)) {
        collectChildren(GMIME_MULTIPART(object), parts, depth);
    } else if (GMIME_IS_MESSAGE_PART(object)) {
        GMimeMessage* inner = g_mime_message_part_get_message(GMIME_MESSAGE_PART(object));
        if (inner != nullptr) collect(g_mime_message_get_mime_part(inner), parts, depth + 1);
    } else if (GMIME_IS_PART(object) && isOfType(object, "text", "*")) {
        auto& list = isAttached(object)                     ? parts.attached
                     : isOfType(object, "text", "calendar") ? parts.calendars
                                                            : parts.shown;
        list.push_back(GMIME_PART(object));
    }
}

/// The content with its transfer encoding undone.
std::string decodedContent(GMimeDataWrapper* content) {
    const Object<GMimeStream> stream(g_mime_stream_mem_new());
    g_mime_data_wrapper_write_to_stream(content, stream.get());
    const GByteArray* bytes = g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(stream.get()));
    return {reinterpret_cast<const char*>(bytes->data), bytes->len};
}

/// `bytes` from a character set in UTF-8; none where the set is not known.
std::optional<std::string> converted(std::string bytes, const char* charset) {
    const Object<GMimeFilter> filter(g_mime_filter_charset_new(charset, "utf-8"));
    if (filter == nullptr) return std::nullopt;
    char* out = nullptr;
    std::size_t length = 0, before = 0;
    g_mime_filter_complete(filter.get(), bytes.data(), bytes.size(), 0, &out, &length, &before);
    return std::string(out, length);
}

bool isAscii(std::string_view bytes) {
    return std::ranges::all_of(bytes, [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

/// Whether `bytes` are UTF-8, but for a character that is cut off at their end. Where that would be the only one beyond
/// ASCII, it is whole in another set.
bool isUtf8(const std::string& bytes) {
    const char* end = nullptr;
    if (g_utf8_validate(bytes.data(), static_cast<gssize>(bytes.size()), &end) != FALSE) return true;
    const std::string_view before(bytes.data(), end);
    constexpr auto cutOff = static_cast<gunichar>(-2);
    const auto left = static_cast<gssize>(bytes.size() - before.size());
    return !isAscii(before) && g_utf8_get_char_validated(end, left) == cutOff;
}

/// Without a character set, or with one that mail programs name for want of a better, the bytes themselves decide.
std::string inUtf8(std::string bytes, const char* charset) {
    const bool says = charset != nullptr && g_ascii_strcasecmp(charset, "us-ascii") != 0;
    if (says && g_ascii_strcasecmp(charset, "utf-8") == 0) return bytes;
    if (says)
        if (auto text = converted(bytes, charset)) return *text;
    std::ranges::replace(bytes, '\0', ' '); // no text for the validation
    if (isUtf8(bytes)) return bytes;
    return converted(bytes, "windows-1252").value_or(bytes);
}

bool isBlank(const std::string& text) { return text.find_first_not_of(" \t\r\n\v\f") == std::string::npos; }

} // namespace

std::vector<GMimePart*> textParts(GMimeMessage* message) {
    Collected parts;
    collect(g_mime_message_get_mime_part(message), parts, 0);
    std::vector<GMimePart*> all = parts.shown;
    all.insert(all.end(), parts.calendars.begin(), parts.calendars.end());
    all.insert(all.end(), parts.attached.begin(), parts.attached.end());
    return all;
}

MessageText textOfPart(GMimePart* part, std::size_t sourceLength) {
    GMimeDataWrapper* content = g_mime_part_get_content(part);
    if (content == nullptr) return {};
    MessageText result;
    const char* charset = g_mime_object_get_content_type_parameter(GMIME_OBJECT(part), "charset");
    result.text = inUtf8(decodedContent(content), charset);
    result.isHtml = isOfType(GMIME_OBJECT(part), "text", "html");
    result.found = !isBlank(result.text);
    const GMimeStream* stream = g_mime_data_wrapper_get_stream(content);
    result.complete = stream->bound_end >= 0 && static_cast<std::size_t>(stream->bound_end) < sourceLength;
    return result;
}

} // namespace vesk::maildir::gmime
