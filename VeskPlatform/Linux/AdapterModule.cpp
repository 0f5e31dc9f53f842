#include "VeskPlatform/Linux/AdapterModule.hpp"

#include <algorithm>
#include <array>
#include <dlfcn.h>
#include <filesystem>
#include <string_view>
#include <utility>

namespace vesk {
namespace {

/// A relative path would depend on the working directory, a bare name on the variables of the dynamic linker; and what
/// has one of the names that it replaces would lead elsewhere (ld.so(8)).
bool leadsToOnePlace(std::string_view folder) {
    static constexpr std::array<std::string_view, 4> replaced{"$ORIGIN", "$LIB", "$PLATFORM", "${"};
    return folder.starts_with('/') && std::ranges::none_of(replaced, [folder](std::string_view name) {
               return folder.find(name) != std::string_view::npos;
           });
}

} // namespace

AdapterModuleMissing::AdapterModuleMissing(const std::string& description)
    : ErrorRecord("VeskAdapterModule", 1, description) {}

std::string moduleFolderOf(const std::string& executablePath) {
    return std::filesystem::path(executablePath).parent_path().parent_path() / "lib/vesk";
}

AdapterModule::AdapterModule(const std::string& folder, const std::string& name, std::string package)
    : name_("vesk-" + name + ".so"), package_(std::move(package)) {
    if (leadsToOnePlace(folder)) handle_ = ::dlopen((folder + "/" + name_).c_str(), RTLD_NOW | RTLD_LOCAL);
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
                               + (reason != nullptr ? reason : "its folder is not one to load from") + ")");
}

} // namespace vesk
