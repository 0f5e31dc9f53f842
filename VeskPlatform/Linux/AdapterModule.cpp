#include "VeskPlatform/Linux/AdapterModule.hpp"

#include <dlfcn.h>
#include <filesystem>
#include <utility>

namespace vesk {

AdapterModuleMissing::AdapterModuleMissing(const std::string& description)
    : ErrorRecord("VeskAdapterModule", 1, description) {}

std::string moduleFolderOf(const std::string& executablePath) {
    return std::filesystem::path(executablePath).parent_path().parent_path() / "lib/vesk";
}

AdapterModule::AdapterModule(const std::string& folder, const std::string& name, std::string package)
    : name_("vesk-" + name + ".so"), package_(std::move(package)) {
    // A relative path would depend on the working directory, and a bare name on the variables of the dynamic linker.
    if (folder.starts_with('/')) handle_ = ::dlopen((folder + "/" + name_).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (handle_ == nullptr) fail();
}

void* AdapterModule::address(const char* symbol) const {
    void* found = ::dlsym(handle_, symbol);
    if (found == nullptr) fail();
    return found;
}

void AdapterModule::fail() const {
    const char* reason = ::dlerror();
    throw AdapterModuleMissing("The module " + name_ + " cannot be loaded; install the package " + package_ + ". ("
                               + (reason != nullptr ? reason : "its folder is unknown") + ")");
}

} // namespace vesk
