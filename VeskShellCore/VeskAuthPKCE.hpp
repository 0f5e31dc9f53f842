#pragma once

#include <string>
#include <string_view>

/// Proof Key for Code Exchange (RFC 7636).
namespace vesk::VeskAuthPKCE {

/// The S256 challenge of a verifier: the SHA-256 digest of its bytes as base64url without padding, 43 characters.
std::string s256CodeChallenge(std::string_view verifier);

} // namespace vesk::VeskAuthPKCE
