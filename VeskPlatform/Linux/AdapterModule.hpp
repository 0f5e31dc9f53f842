#pragma once

#include "VeskSupport/ErrorRecord.hpp"

#include <string>

namespace vesk {

/// A module cannot be loaded: code 1, domain "VeskAdapterModule". The description has the loader's reason and names the
/// Debian package whose library the module needs.
class AdapterModuleError : public ErrorRecord {
public:
    explicit AdapterModuleError(std::string description)
        : ErrorRecord("VeskAdapterModule", 1, std::move(description)) {}
};

/// A library of adapters that lies in `../lib/vesk` from the running executable and is loaded when it is first asked
/// for, because what it links is too heavy for every start. It stays loaded, since what it has made refers to it.
struct AdapterModule {
    /// The name of its file, without `.so`.
    std::string name;
    /// The Debian package of the library that it stands on.
    std::string package;

    /// The address of a function that the module exports. Throws AdapterModuleError.
    void* address(const char* function) const;

    template <class Function> Function* function(const char* functionName) const {
        return reinterpret_cast<Function*>(address(functionName));
    }
};

} // namespace vesk
