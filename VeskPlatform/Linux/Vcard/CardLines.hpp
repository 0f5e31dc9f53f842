#pragma once

#include "VeskPlatform/Linux/Vcard/CardScanner.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::vcard {

enum class CardVersion { v21, v30, v40 };

/// A content line of a card, not decoded yet.
struct CardLine {
    /// As it stands; empty where there is none.
    std::string group;
    /// In upper case.
    std::string name;
    /// In the card: with its continuation lines and its line end.
    CardRange range;
    /// A quoted-printable line whose last soft line break has nothing to continue with.
    bool isOpen = false;
};

struct CardParameter {
    /// In upper case. A parameter without name (2.1) is an ENCODING where it names one, else a TYPE.
    std::string name;
    /// Without quotation marks; a list with its commas.
    std::string value;
    /// As it stands, unfolded, without its ';'.
    std::string bytes;
};

/// A content line, unfolded.
struct CardProperty {
    /// Group and name as they stand.
    std::string fullName;
    std::vector<CardParameter> parameters;
    /// As it stands but for folding: with its escapes and its encoding.
    std::string value;

    /// The value of the first parameter of that name (in upper case).
    std::optional<std::string_view> parameter(std::string_view name) const;
    bool isQuotedPrintable() const;
    bool isBase64() const;
    /// The CHARSET, empty where there is none.
    std::string_view characterSet() const;
};

/// The content lines of one whole card (RFC 6350, section 3.3; RFC 2426; vCard 2.1), those of a card within it left
/// out. One pass finds where they begin and what they are called; only those asked for are unfolded. The text must
/// outlive it. Takes any bytes; lines that are no content lines are left out.
class CardLines {
public:
    explicit CardLines(std::string_view card);

    const std::vector<CardLine>& lines() const { return lines_; }
    /// 3.0 where the card tells none.
    CardVersion version() const { return version_; }
    /// The first line of that name (in upper case), null where there is none.
    const CardLine* first(std::string_view name) const;
    /// Where the line stands that ends the card; none where there is no whole card.
    std::optional<std::size_t> endOfLines() const { return end_; }
    /// Whether a line that is written at `endOfLines` would continue the one before it.
    bool isOpenAtEnd() const { return isOpenAtEnd_; }

    CardProperty property(const CardLine& line) const;

private:
    void scan();
    void readVersion();

    std::string_view card_;
    std::vector<CardLine> lines_;
    CardVersion version_ = CardVersion::v30;
    std::optional<std::size_t> end_;
    bool isOpenAtEnd_ = false;
};

} // namespace vesk::vcard
