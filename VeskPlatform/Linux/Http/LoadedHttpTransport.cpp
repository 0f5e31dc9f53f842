#include "VeskPlatform/Linux/Http/LoadedHttpTransport.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/Http/StatusText.hpp"

namespace vesk {

HttpResponse LoadedHttpTransport::send(const HttpRequest& request) { return loaded().send(request); }

std::string LoadedHttpTransport::standardText(int status) { return standardStatusText(status); }

HttpTransport& LoadedHttpTransport::loaded() {
    const std::lock_guard lock(loading_);
    if (!transport_) {
        const AdapterModule module(moduleFolder_, "http", "libcurl4");
        transport_.reset(module.function<HttpTransportFactory>("veskHttpTransport")(certificates_));
    }
    return *transport_;
}

} // namespace vesk
