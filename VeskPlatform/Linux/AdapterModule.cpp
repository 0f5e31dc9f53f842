#include "VeskPlatform/Linux/AdapterModule.hpp"

#include "VeskPlatform/Linux/MainBundle.hpp"

#include <dlfcn.h>
#include <filesystem>

namespace vesk {

namespace {

/// An absolute path, so that the loader looks nowhere else.
std::string pathOf(const std::string& name) {
    const std::filesystem::path programs = std::filesystem::path(runningExecutable()).parent_path();
    return (programs.parent_path() / "lib/vesk" / (name + ".so")).string();
}

AdapterModuleError failure(const AdapterModule& module) {
    const char* reason = ::dlerror();
    return AdapterModuleError("The module " + module.name + " cannot be loaded: "
                              + (reason == nullptr ? "no reason given" : reason) + ". Install the package "
                              + module.package + ", or Vesk anew if the module itself is missing.");
}

} // namespace

void* AdapterModule::address(const char* function) const {
    void* const library = ::dlopen(pathOf(name).c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NODELETE);
    if (library == nullptr) throw failure(*this);
    void* const found = ::dlsym(library, function);
    if (found == nullptr) throw failure(*this);
    return found;
}

} // namespace vesk
