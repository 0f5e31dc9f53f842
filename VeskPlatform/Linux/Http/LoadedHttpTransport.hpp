#pragma once

#include "VeskPlatform/HttpTransport.hpp"
#include "VeskPlatform/Linux/Http/CertificatePlaces.hpp"

#include <memory>
#include <mutex>
#include <utility>

namespace vesk {

/// `veskHttpTransport` in the module `http`, which makes an object that the caller owns.
using HttpTransportFactory = HttpTransport*(const CertificatePlaces& certificates);

/// HTTP through the module `http`, which is loaded by the first request. Throws AdapterModuleMissing where that cannot
/// be.
class LoadedHttpTransport : public HttpTransport {
public:
    /// `moduleFolder` is as in AdapterModule.
    LoadedHttpTransport(std::string moduleFolder, CertificatePlaces certificates)
        : moduleFolder_(std::move(moduleFolder)), certificates_(std::move(certificates)) {}
    HttpResponse send(const HttpRequest& request) override;
    std::string standardText(int status) override;

private:
    HttpTransport& loaded();

    std::string moduleFolder_;
    CertificatePlaces certificates_;
    std::mutex loading_;
    std::unique_ptr<HttpTransport> transport_;
};

} // namespace vesk
