#pragma once

#include "VeskPlatform/Linux/Vcard/CardReading.hpp"
#include "VeskPlatform/Linux/Vdir/FileHealth.hpp"
#include "VeskPlatform/Linux/Vdir/FileSignature.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk::vcard {

/// A file of an address book as it was read.
struct IndexedCardFile {
    vdir::FileSignature signature;
    vdir::FileHealth health = vdir::FileHealth::whole;
    /// In the order of the file.
    std::vector<ReadCard> cards;
};

/// The bytes to keep of an address book between runs, for this machine.
std::string encodedCards(const std::vector<IndexedCardFile>& files);

/// None for bytes that are damaged or of another version. Uses several threads for large books.
std::optional<std::vector<IndexedCardFile>> decodedCards(std::string_view bytes);

} // namespace vesk::vcard
