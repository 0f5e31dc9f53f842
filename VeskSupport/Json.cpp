#include "VeskSupport/Json.hpp"

#include "VeskSupport/JsonWriter.hpp"

#include <iterator>
#include <nlohmann/json.hpp>
#include <optional>
#include <utility>

namespace vesk {

DecodingError::DecodingError(Kind kind, std::string description)
    : ErrorRecord("NSCocoaErrorDomain", static_cast<int>(kind), std::move(description)) {}

namespace {

[[noreturn]] void failCorrupt(const std::string& reason) {
    throw DecodingError(DecodingError::Kind::corrupt, "The data is not valid JSON: " + reason);
}

/// Builds a JsonValue from the parser's events; refuses nesting beyond the limit. The items of lists and objects that
/// are still open lie on one stack, so that each list is made once, in its final size.
class Builder : public nlohmann::json_sax<nlohmann::json> {
public:
    explicit Builder(std::size_t maximumDepth) : maximumDepth_(maximumDepth) {}

    JsonValue take() { return std::move(items_.at(0).second); }

    bool null() override { return add(nullptr); }
    bool boolean(bool v) override { return add(v); }
    bool number_integer(number_integer_t v) override { return add(std::int64_t{v}); }
    bool number_unsigned(number_unsigned_t v) override {
        if (v > static_cast<number_unsigned_t>(INT64_MAX)) return add(static_cast<double>(v));
        return add(static_cast<std::int64_t>(v));
    }
    bool number_float(number_float_t v, const string_t&) override { return add(v); }
    bool string(string_t& v) override { return add(std::string(v)); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(); }
    bool end_object() override {
        const auto first = firstOfInnermost();
        JsonObject::Members members(std::make_move_iterator(first), std::make_move_iterator(items_.end()));
        return close(JsonObject(std::move(members)));
    }
    bool start_array(std::size_t) override { return open(); }
    bool end_array() override {
        JsonValue::Array list;
        list.reserve(items_.size() - open_.back());
        for (auto item = firstOfInnermost(); item != items_.end(); ++item) list.push_back(std::move(item->second));
        return close(std::move(list));
    }
    bool key(string_t& v) override {
        items_.emplace_back(v, JsonValue{});
        keyed_ = true;
        return true;
    }
    bool parse_error(std::size_t position, const std::string&, const nlohmann::detail::exception&) override {
        failCorrupt("unexpected content at byte " + std::to_string(position) + ".");
    }

private:
    template <class T> bool add(T value) {
        if (std::exchange(keyed_, false))
            items_.back().second.value = std::move(value);
        else
            items_.emplace_back(std::string(), JsonValue{std::move(value)});
        return true;
    }
    bool open() {
        if (open_.size() >= maximumDepth_) failCorrupt("it is nested too deeply.");
        add(nullptr);
        open_.push_back(items_.size());
        return true;
    }
    JsonObject::Members::iterator firstOfInnermost() {
        return items_.begin() + static_cast<std::ptrdiff_t>(open_.back());
    }
    /// The list or object takes the place that `open` made for it.
    template <class T> bool close(T value) {
        items_.erase(firstOfInnermost(), items_.end());
        open_.pop_back();
        items_.back().second.value = std::move(value);
        return true;
    }

    std::size_t maximumDepth_;
    /// What has been read and is not yet in a list or object; the key is empty in lists.
    JsonObject::Members items_;
    /// For each list or object that is open, where its items begin.
    std::vector<std::size_t> open_;
    /// Whether the last item is a key without its value.
    bool keyed_ = false;
};

} // namespace

JsonValue parseJson(std::string_view text, const JsonLimits& limits) {
    if (text.size() > limits.bytes) failCorrupt("it is larger than " + std::to_string(limits.bytes) + " bytes.");
    Builder builder(limits.depth);
    if (!nlohmann::json::sax_parse(text.begin(), text.end(), &builder)) failCorrupt("it cannot be read.");
    return builder.take();
}

std::string writeJson(const JsonValue& value, SlashStyle slashes) {
    return jsonText(value, slashes, JsonSpacing::pretty);
}

} // namespace vesk
