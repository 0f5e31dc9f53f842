#include "VeskPlatform/Linux/Http/CertificatePlaces.hpp"

#include "VeskPlatform/Environment.hpp"

namespace vesk {

CertificatePlaces certificatePlaces(Environment& environment) {
    return {environment.value("SSL_CERT_FILE"), environment.value("SSL_CERT_DIR")};
}

} // namespace vesk
