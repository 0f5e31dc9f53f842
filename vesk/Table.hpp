#pragma once

#include <string>
#include <vector>

namespace vesk {

/// Rows of cells as lines of text: columns as wide as their widest cell, two blanks between them, none at a line's end.
/// A control character in a cell becomes a blank, so that no cell can move the cursor.
std::string tableText(const std::vector<std::vector<std::string>>& rows);

} // namespace vesk
