#include "VeskPlatform/Linux/Http/CurlHttpTransport.hpp"

/// A HttpTransportFactory.
extern "C" __attribute__((visibility("default"))) vesk::HttpTransport*
veskHttpTransport(const vesk::CertificatePlaces& certificates) {
    return new vesk::CurlHttpTransport(certificates);
}
