#include "VeskSupport/Json.hpp"

#include "VeskSupport/Text.hpp"

#include <charconv>
#include <cmath>
#include <nlohmann/json.hpp>
#include <optional>

namespace vesk {

DecodingError::DecodingError(Kind kind, std::string description)
    : ErrorRecord("NSCocoaErrorDomain", static_cast<int>(kind), std::move(description)) {}

namespace {

[[noreturn]] void failCorrupt(const std::string& reason) {
    throw DecodingError(DecodingError::Kind::corrupt, "The data is not valid JSON: " + reason);
}

/// Builds a JsonValue from the parser's events; refuses nesting beyond the limit.
class Builder : public nlohmann::json_sax<nlohmann::json> {
public:
    explicit Builder(std::size_t maximumDepth) : maximumDepth_(maximumDepth) {}

    JsonValue take() { return std::move(root_); }

    bool null() override { return add(JsonValue{nullptr}) != nullptr; }
    bool boolean(bool v) override { return add(JsonValue{v}) != nullptr; }
    bool number_integer(number_integer_t v) override { return add(JsonValue{v}) != nullptr; }
    bool number_unsigned(number_unsigned_t v) override {
        if (v > static_cast<number_unsigned_t>(INT64_MAX)) return add(JsonValue{static_cast<double>(v)}) != nullptr;
        return add(JsonValue{static_cast<std::int64_t>(v)}) != nullptr;
    }
    bool number_float(number_float_t v, const string_t&) override { return add(JsonValue{v}) != nullptr; }
    bool string(string_t& v) override { return add(JsonValue{std::move(v)}) != nullptr; }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(JsonValue{JsonValue::Object{}}); }
    bool end_object() override { return close(); }
    bool start_array(std::size_t) override { return open(JsonValue{JsonValue::Array{}}); }
    bool end_array() override { return close(); }
    bool key(string_t& v) override {
        key_ = std::move(v);
        return true;
    }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception&) override {
        failCorrupt("unexpected content at byte " + std::to_string(position) + ".");
    }

private:
    JsonValue* add(JsonValue value) {
        if (stack_.empty()) {
            root_ = std::move(value);
            return &root_;
        }
        if (auto* list = std::get_if<JsonValue::Array>(&stack_.back()->value))
            return &list->emplace_back(std::move(value));
        auto& object = std::get<JsonValue::Object>(stack_.back()->value);
        return &object.insert_or_assign(std::move(key_), std::move(value)).first->second;
    }
    bool open(JsonValue value) {
        if (stack_.size() >= maximumDepth_) failCorrupt("it is nested too deeply.");
        stack_.push_back(add(std::move(value)));
        return true;
    }
    bool close() {
        stack_.pop_back();
        return true;
    }

    std::size_t maximumDepth_;
    JsonValue root_;
    std::string key_;
    std::vector<JsonValue*> stack_;
};

class Writer {
public:
    explicit Writer(SlashStyle slashes) : slashes_(slashes) {}

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
            out_ += " : ";
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
        if (empty) out_ += '\n';
        newLine(level);
        out_ += bracket;
    }
    void newLine(std::size_t level) {
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
    std::string out_;
};

} // namespace

JsonValue parseJson(std::string_view text, const JsonLimits& limits) {
    if (text.size() > limits.bytes) failCorrupt("it is larger than " + std::to_string(limits.bytes) + " bytes.");
    Builder builder(limits.depth);
    if (!nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) failCorrupt("it cannot be read.");
    return builder.take();
}

std::string writeJson(const JsonValue& value, SlashStyle slashes) {
    Writer writer(slashes);
    writer.write(value, 0);
    return writer.take();
}

} // namespace vesk
