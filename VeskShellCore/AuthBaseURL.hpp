#pragma once

#include <string>
#include <string_view>

namespace vesk {

/// Whether `text` is a URL with a scheme (RFC 3986, sections 2 and 3). A colon followed by nothing but digits, up to
/// the end or a slash, ends a host and no scheme: "host:8080/path" has none.
bool isURLWithScheme(std::string_view text);

/// `url` with `path`, which begins with a slash, at the end of its own path; a query and a fragment stay behind it.
std::string appendingPath(const std::string& url, std::string_view path);

} // namespace vesk
