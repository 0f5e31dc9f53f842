#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <string>

namespace vesk {

/// What an adapter needs is missing: its module, or a library that the module links. The description names the Debian
/// package to install. Domain "VeskAdapterModule", code 1.
class AdapterModuleMissing : public ErrorRecord {
public:
    explicit AdapterModuleMissing(const std::string& description);
};

/// Where the modules of an executable lie: `../lib/vesk` from it. Its path is absolute, with links resolved.
std::string moduleFolderOf(const std::string& executablePath);

/// A module that is open: the shared object `vesk-NAME.so` of the modules' folder and nowhere else. It stays loaded to
/// the end of the process: libraries such as GLib keep threads and handlers of their own.
class AdapterModule {
public:
    /// `folder` is absolute and has no name that the dynamic linker replaces; `package` is the Debian package of the
    /// library that the module stands on. Throws AdapterModuleMissing.
    AdapterModule(const std::string& folder, const std::string& name, std::string package);

    /// The C function `symbol`, whose type the caller knows. Throws AdapterModuleMissing where there is none.
    template <class Function> Function* function(const char* symbol) const {
        return reinterpret_cast<Function*>(address(symbol));
    }

private:
    void* address(const char* symbol) const;
    [[noreturn]] void fail() const;

    std::string name_, package_;
    void* handle_ = nullptr;
};

} // namespace vesk
