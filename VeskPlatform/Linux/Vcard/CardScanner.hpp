#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace vesk::vcard {

/// A span of bytes of the scanned text.
struct CardRange {
    std::size_t begin = 0, end = 0;

    std::string_view of(std::string_view text) const { return text.substr(begin, end - begin); }
    bool operator==(const CardRange&) const = default;
};

struct ScannedCards {
    /// From BEGIN:VCARD to END:VCARD with its line end, in file order. A card within an AGENT belongs to its outer one.
    std::vector<CardRange> cards;
    /// No card at all, a card that is cut off, or an END without its BEGIN.
    bool damaged = false;
};

/// Finds the cards of a vCard file (2.1, 3.0, 4.0) in one pass, without reading their properties. A byte order mark is
/// passed over; whole cards of a damaged file are still found. Never throws but for want of memory.
ScannedCards scanCards(std::string_view bytes);

} // namespace vesk::vcard
