#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vesk::vcard {

/// A line between two line ends (CR LF, LF, bare CR, and the CR CR LF of a doubled conversion).
struct PhysicalLine {
    std::string_view text;
    /// Offsets in the whole text: where the line begins, and where the next one does.
    std::size_t begin = 0, next = 0;
};

/// Goes through the lines of a text, each byte looked at twice at most, however its lines end. The text must outlive
/// it.
class PhysicalLines {
public:
    explicit PhysicalLines(std::string_view text, std::size_t begin = 0) : text_(text), next_(begin) {}

    bool atEnd() const { return next_ >= text_.size(); }
    /// Whether the next line begins with a blank or a tab, and so continues the one before it.
    bool continues() const { return !atEnd() && (text_[next_] == ' ' || text_[next_] == '\t'); }
    /// The next line, which is passed over.
    PhysicalLine take();
    /// The next line, which stays the next one.
    PhysicalLine peek() const;

private:
    std::string_view text_;
    std::size_t next_;
    /// The first LF at or behind `next_`, or the end of the text; looked for anew only when it is passed.
    std::size_t lineFeed_ = 0;
    bool lineFeedKnown_ = false;
};

/// What a physical line means for the nesting of cards, case and blanks around the colon aside.
enum class CardMarker {
    none,
    begin,
    end,
    /// AGENT with no value on its line: a card that begins on the next one belongs to it.
    agent,
    /// AGENT with the BEGIN of its card on the same line.
    agentBegin,
};

CardMarker cardMarker(std::string_view physicalLine);

/// `text` with its ASCII letters in upper case.
std::string upperCased(std::string_view text);

/// Whether two texts are the same, the case of ASCII letters aside.
bool isSameWord(std::string_view a, std::string_view b);

/// `text` without blanks and tabs at both ends.
std::string_view withoutBlanks(std::string_view text);

} // namespace vesk::vcard
