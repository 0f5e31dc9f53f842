#include "VeskSupport/JsonWriter.hpp"

#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <charconv>
#include <cmath>
#include <utility>
#include <variant>

namespace vesk {
namespace {

class JsonWriter {
public:
    JsonWriter(SlashStyle slashes, JsonSpacing spacing) : slashes_(slashes), spacing_(spacing) {}

    void write(const JsonValue& value, std::size_t level) {
        std::visit([&](const auto& v) { writeValue(v, level); }, value.value);
    }
    std::string take() { return std::move(out_); }

private:
    void writeValue(std::nullptr_t, std::size_t) { out_ += "null"; }
    void writeValue(bool v, std::size_t) { out_ += v ? "true" : "false"; }
    void writeValue(std::int64_t v, std::size_t) { out_ += std::to_string(v); }
    void writeValue(double v, std::size_t) {
        if (!std::isfinite(v))
            throw ErrorRecord("NSCocoaErrorDomain", 4866, "A number that is not finite cannot be written as JSON.");
        char buffer[32];
        const bool shortWhole = std::trunc(v) == v && std::abs(v) < 1e16;
        const auto end = shortWhole ? std::to_chars(buffer, buffer + sizeof buffer, static_cast<std::int64_t>(v))
                                    : std::to_chars(buffer, buffer + sizeof buffer, v);
        out_.append(buffer, end.ptr);
    }
    void writeValue(const std::string& v, std::size_t) { writeString(v); }
    void writeValue(const JsonValue::Array& list, std::size_t level) {
        out_ += '[';
        for (const JsonValue& item : list) {
            startItem(&item != list.data(), level + 1);
            write(item, level + 1);
        }
        finish(list.empty(), level, ']');
    }
    void writeValue(const JsonValue::Object& object, std::size_t level) {
        out_ += '{';
        bool later = false;
        for (const auto& [key, item] : object) {
            startItem(later, level + 1);
            writeString(key);
            out_ += spacing_ == JsonSpacing::pretty ? " : " : ":";
            write(item, level + 1);
            later = true;
        }
        finish(object.empty(), level, '}');
    }
    void startItem(bool later, std::size_t level) {
        if (later) out_ += ',';
        newLine(level);
    }
    void finish(bool empty, std::size_t level, char bracket) {
        if (empty && spacing_ == JsonSpacing::pretty) out_ += '\n';
        newLine(level);
        out_ += bracket;
    }
    void newLine(std::size_t level) {
        if (spacing_ == JsonSpacing::compact) return;
        out_ += '\n';
        out_.append(level * 2, ' ');
    }
    void writeString(std::string_view text) {
        out_ += '"';
        for (const char c : repairedUtf8(text)) writeCharacter(c);
        out_ += '"';
    }
    void writeCharacter(char c) {
        switch (c) {
        case '"': out_ += "\\\""; return;
        case '\\': out_ += "\\\\"; return;
        case '/': out_ += slashes_ == SlashStyle::escaped ? "\\/" : "/"; return;
        case '\b': out_ += "\\b"; return;
        case '\f': out_ += "\\f"; return;
        case '\n': out_ += "\\n"; return;
        case '\r': out_ += "\\r"; return;
        case '\t': out_ += "\\t"; return;
        default: break;
        }
        if (static_cast<unsigned char>(c) >= 0x20) {
            out_ += c;
            return;
        }
        static constexpr char digits[] = "0123456789abcdef";
        out_ += "\\u00";
        out_ += digits[c >> 4];
        out_ += digits[c & 15];
    }

    SlashStyle slashes_;
    JsonSpacing spacing_;
    std::string out_;
};

} // namespace

std::string jsonText(const JsonValue& value, SlashStyle slashes, JsonSpacing spacing) {
    JsonWriter writer(slashes, spacing);
    writer.write(value, 0);
    return writer.take();
}

} // namespace vesk
