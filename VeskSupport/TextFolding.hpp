#pragma once

#include <string>
#include <string_view>

namespace vesk {

/// One normal form for texts that differ only in case, diacritics or blanks at their ends, by the rules of a locale: in
/// Turkish and Azerbaijani the dotless and the dotted i are different letters.
///
/// What goes are the marks above, below and through letters and the points of Hebrew and Arabic; signs that are letters
/// of their own, such as the vowels of Indic scripts and the voicing marks of kana, stay. Letters with a stroke, such
/// as "ø", are letters of their own too.
class TextFolding {
public:
    /// An ICU identifier such as "de_DE".
    explicit TextFolding(std::string_view localeIdentifier);

    /// `text` folded, in lower case and trimmed. Ill-formed UTF-8 is read as U+FFFD.
    std::string folded(std::string_view text) const;

private:
    bool isTurkic_;
};

} // namespace vesk
