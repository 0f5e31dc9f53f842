#pragma once

#include <string>

namespace vesk {

/// A style sheet (CSS Paged Media) that outweighs those of a document: paper of that size in points, no margins, and
/// nothing in the margin boxes.
std::string paperStyle(double width, double height);

} // namespace vesk
