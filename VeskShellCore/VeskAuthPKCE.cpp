#include "VeskShellCore/VeskAuthPKCE.hpp"

#include "VeskSupport/Base64.hpp"
#include "VeskSupport/Sha256.hpp"

namespace vesk {

std::string VeskAuthPKCE::s256CodeChallenge(std::string_view verifier) {
    const auto digest = sha256(verifier);
    return base64UrlEncoded({reinterpret_cast<const char*>(digest.data()), digest.size()});
}

} // namespace vesk
