#include "VeskPlatform/Linux/ElfSection.hpp"

#include "VeskPlatform/Portable/FileDescriptor.hpp"

#include <fcntl.h>
#include <gelf.h>
#include <memory>
#include <sys/stat.h>

namespace vesk {

namespace {

/// More than any text that belongs into a program, and little to read.
constexpr std::size_t mostBytes = std::size_t{1} << 20;

struct EndElf {
    void operator()(Elf* file) const { elf_end(file); }
};

FileDescriptor openRegularFile(const std::string& path) {
    FileDescriptor file(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
    struct stat status {};
    if (file && (::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode))) file.reset();
    return file;
}

std::optional<std::string> contents(Elf_Scn* section) {
    const Elf_Data* data = elf_rawdata(section, nullptr);
    if (data == nullptr || data->d_size > mostBytes) return std::nullopt;
    if (data->d_buf == nullptr) return std::string();
    return std::string(static_cast<const char*>(data->d_buf), data->d_size);
}

} // namespace

std::optional<std::string> elfSection(const std::string& path, const std::string& name) {
    const FileDescriptor file = openRegularFile(path);
    if (!file || elf_version(EV_CURRENT) == EV_NONE) return std::nullopt;
    const std::unique_ptr<Elf, EndElf> elf(elf_begin(file.get(), ELF_C_READ, nullptr));
    std::size_t names = 0;
    if (elf == nullptr || elf_kind(elf.get()) != ELF_K_ELF || elf_getshdrstrndx(elf.get(), &names) != 0)
        return std::nullopt;
    for (Elf_Scn* section = nullptr; (section = elf_nextscn(elf.get(), section)) != nullptr;) {
        GElf_Shdr header{};
        if (gelf_getshdr(section, &header) == nullptr) return std::nullopt;
        const char* candidate = elf_strptr(elf.get(), names, header.sh_name);
        if (candidate != nullptr && candidate == name) return contents(section);
    }
    return std::nullopt;
}

} // namespace vesk
