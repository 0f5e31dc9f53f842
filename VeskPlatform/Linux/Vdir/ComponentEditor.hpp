#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vesk::vdir {

/// Changes single properties in the text of one whole component (RFC 5545). Everything else, also the components within
/// it, its folding and its line ends, stays as it stands byte for byte; what is written has the text's own line ends.
class ComponentEditor {
public:
    explicit ComponentEditor(std::string_view component);

    /// Writes `NAME;parameters:value` in the place of the first property of that name (in upper case), before the
    /// first inner component where there is none yet; any further one of that name goes. `value` is as it shall stand
    /// in the file, `parameters` begins with ';' or is empty.
    void set(const std::string& name, const std::string& value, const std::string& parameters = {});
    void remove(std::string_view name);

    std::string text() const;

private:
    struct Line {
        std::string bytes;
        /// Empty for lines of inner components.
        std::string name;
    };
    std::vector<Line> lines_;
    std::string lineEnd_;
};

/// A TEXT value (RFC 5545, section 3.3.11) with its escapes; control characters but line breaks and tabs are left out.
std::string escapedText(std::string_view text);

/// `line` folded (RFC 5545, section 3.1) with its line end; never within a character.
std::string foldedLine(std::string_view line, std::string_view lineEnd);

/// The line end of `text`: that of its first line, CR LF where it has none.
std::string lineEndOf(std::string_view text);

} // namespace vesk::vdir
