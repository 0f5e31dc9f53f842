#pragma once

#include <optional>
#include <string>

namespace vesk {

class Environment;

/// Where the certificates lie that are trusted, in place of the system's own file and folder.
struct CertificatePlaces {
    /// A file of certificates in PEM form.
    std::optional<std::string> file;
    /// A folder of such files, named by their hashes (`openssl rehash`).
    std::optional<std::string> folder;
};

/// As SSL_CERT_FILE and SSL_CERT_DIR say, the variables of OpenSSL.
CertificatePlaces certificatePlaces(Environment& environment);

} // namespace vesk
