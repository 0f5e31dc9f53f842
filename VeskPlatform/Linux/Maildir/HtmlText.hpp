#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace vesk::maildir {

/// The text that a browser would show of `html`, roughly: without tags, comments, the head, scripts and styles;
/// character references resolved; runs of white space as one blank; block elements and line breaks as LF, never two
/// together. Stops early once the text has `enough` bytes.
std::string htmlText(std::string_view html, std::size_t enough);

} // namespace vesk::maildir
