#include "VeskShellCore/OutputFile.hpp"

#include "VeskShellCore/WorkingDirectory.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/FilePath.hpp"

#include <cerrno>

namespace vesk {

std::string outputFilePath(FileManager& files, std::string_view path) {
    const std::string named(path.substr(0, path.find('\0')));
    if (named.size() < path.size()) throw PosixError(EINVAL, named);
    std::string standardized = standardizedPath(absolutePath(files, path));
    const auto former = files.attributes(standardized);
    if (former && !former->isDirectory && !former->size) throw PosixError(EINVAL, standardized);
    return standardized;
}

} // namespace vesk
