#include "VeskPlatform/Linux/Maildir/HtmlText.hpp"

#include "VeskPlatform/Linux/Maildir/HtmlEntities.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <optional>
#include <utility>

namespace vesk::maildir {
namespace {

/// Elements whose begin and end start a new line.
constexpr std::array<std::string_view, 36> blocks{
    "address", "article", "aside", "blockquote", "body",   "br",     "center", "dd",   "details",
    "div",     "dl",      "dt",    "fieldset",   "figure", "footer", "form",   "h1",   "h2",
    "h3",      "h4",      "h5",    "h6",         "header", "hr",     "li",     "main", "nav",
    "ol",      "p",       "pre",   "section",    "table",  "tbody",  "tr",     "ul",   "caption"};

/// Elements whose content is no text to show.
constexpr std::array<std::string_view, 6> hidden{"head", "noscript", "script", "style", "template", "title"};

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }
bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

template <std::size_t count> bool isOneOf(const std::array<std::string_view, count>& names, std::string_view name) {
    return std::ranges::find(names, name) != names.end();
}

void appendUtf8(std::string& out, char32_t c) {
    if (c == 0 || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) c = 0xFFFD;
    const auto byte = [&](char32_t value) { out.push_back(static_cast<char>(value)); };
    if (c < 0x80) return byte(c);
    if (c < 0x800)
        byte(0xC0 | (c >> 6));
    else if (c < 0x10000)
        byte(0xE0 | (c >> 12));
    else
        byte(0xF0 | (c >> 18));
    if (c >= 0x10000) byte(0x80 | ((c >> 12) & 0x3F));
    if (c >= 0x800) byte(0x80 | ((c >> 6) & 0x3F));
    byte(0x80 | (c & 0x3F));
}

/// Collects text with its white space collapsed as a browser does.
class FlowingText {
public:
    void space() { pending_ = pending_ == '\n' ? '\n' : ' '; }
    void lineBreak() { pending_ = '\n'; }
    template <class Append> void visible(Append append) {
        if (pending_ != 0 && !text_.empty()) text_.push_back(pending_);
        pending_ = 0;
        append(text_);
    }
    void character(char32_t c) {
        visible([c](std::string& text) { appendUtf8(text, c); });
    }
    void byte(char c) {
        if (isSpace(c)) return space();
        visible([c](std::string& text) { text.push_back(c); });
    }
    std::size_t size() const { return text_.size(); }
    std::string take() { return std::move(text_); }

private:
    std::string text_;
    char pending_ = 0;
};

class HtmlReader {
public:
    explicit HtmlReader(std::string_view html) : rest_(html) {}

    std::string textUpTo(std::size_t enough) {
        while (!rest_.empty() && text_.size() < enough) {
            if (rest_.front() == '<')
                readMarkup();
            else if (rest_.front() == '&')
                readReference();
            else
                takeByte();
        }
        return text_.take();
    }

private:
    void takeByte() {
        text_.byte(rest_.front());
        rest_.remove_prefix(1);
    }
    /// Goes behind `end`, or to the end of all where there is none.
    void skipPast(std::string_view end) {
        const std::size_t place = rest_.find(end);
        rest_.remove_prefix(place == std::string_view::npos ? rest_.size() : place + end.size());
    }

    void readMarkup() {
        if (rest_.starts_with("<!--")) return skipPast("-->");
        if (rest_.starts_with("<!") || rest_.starts_with("<?")) return skipPast(">");
        const bool closes = rest_.starts_with("</");
        std::size_t end = closes ? 2 : 1;
        if (end >= rest_.size() || !isLetter(rest_[end])) return takeByte(); // a plain "less than"
        std::string name;
        while (end < rest_.size() && (isLetter(rest_[end]) || isDigit(rest_[end]))) name.push_back(lower(rest_[end++]));
        skipTag(end);
        if (isOneOf(blocks, name)) text_.lineBreak();
        if (name == "td" || name == "th") text_.space();
        if (!closes && isOneOf(hidden, name) && (headEnds_ || name != "head")) skipElement(name);
    }

    /// Goes behind the tag; a ">" inside a quoted value does not end it.
    void skipTag(std::size_t position) {
        char quote = 0;
        for (; position < rest_.size(); ++position) {
            const char c = rest_[position];
            if (quote != 0 ? c == quote : c == '"' || c == '\'')
                quote = quote != 0 ? '\0' : c;
            else if (quote == 0 && c == '>')
                break;
        }
        rest_.remove_prefix(std::min(rest_.size(), position + 1));
    }

    void skipElement(std::string_view name) {
        for (std::size_t place = rest_.find("</"); place != std::string_view::npos;
             place = rest_.find("</", place + 2)) {
            const std::string_view candidate = rest_.substr(place + 2, name.size());
            if (!std::ranges::equal(candidate, name, {}, lower)) continue;
            rest_.remove_prefix(place);
            return skipTag(2);
        }
        // A head without an end holds the body too; anything else runs to the end of all.
        if (name == "head")
            headEnds_ = false;
        else
            rest_ = {};
    }

    void readReference() {
        const std::size_t limit = std::min<std::size_t>(rest_.size(), 32);
        std::size_t end = 1;
        while (end < limit && (isLetter(rest_[end]) || isDigit(rest_[end]) || rest_[end] == '#')) ++end;
        const auto c = characterOf(rest_.substr(1, end - 1));
        if (!c) return takeByte();
        if (end < rest_.size() && rest_[end] == ';') ++end;
        rest_.remove_prefix(end);
        if (*c == 0xA0 || (*c < 0x80 && isSpace(static_cast<char>(*c)))) return text_.space();
        text_.character(*c);
    }

    static std::optional<char32_t> characterOf(std::string_view name) {
        if (!name.starts_with('#')) return namedCharacter(name);
        name.remove_prefix(1);
        const bool hexadecimal = name.starts_with('x') || name.starts_with('X');
        if (hexadecimal) name.remove_prefix(1);
        std::uint32_t number = 0;
        const auto [end, error] =
            std::from_chars(name.data(), name.data() + name.size(), number, hexadecimal ? 16 : 10);
        if (name.empty() || end == name.data()) return std::nullopt;
        return error == std::errc() ? static_cast<char32_t>(number) : char32_t{0xFFFD};
    }

    std::string_view rest_;
    FlowingText text_;
    bool headEnds_ = true; ///< As far as is known; looking for the end again and again would cost the square.
};

} // namespace

std::string htmlText(std::string_view html, std::size_t enough) { return HtmlReader(html).textUpTo(enough); }

} // namespace vesk::maildir
