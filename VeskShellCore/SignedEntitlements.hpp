#pragma once

#include "VeskPlatform/Bundle.hpp"
#include "VeskPlatform/Platform.hpp"
#include "VeskSupport/Json.hpp"

#include <string>
#include <string_view>

/// The rights that a program's signature really grants, whatever its settings claim. Nothing here fails: a signature
/// that is missing or cannot be read grants nothing.
namespace vesk::VeskSignedEntitlements {

/// Those of one file or bundle.
JsonValue::Object read(Platform& platform, const std::string& path);
/// Those of the bundle's executable; where it has none, those of the bundle itself.
JsonValue::Object read(Platform& platform, const Bundle& bundle);

/// Whether the value of `key` is the boolean true; "true" and 1 are not.
bool hasBoolean(Platform& platform, std::string_view key, const Bundle& bundle);

} // namespace vesk::VeskSignedEntitlements
