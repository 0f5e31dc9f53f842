#pragma once

#include <string>

namespace vesk {

/// Whether it can name a service or an account of any store of secrets: UTF-8 without null bytes.
bool isKeychainName(const std::string& text);

} // namespace vesk
