#include "VeskShellCore/MediaInputs.hpp"

#include "VeskSupport/FilePath.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <initializer_list>
#include <string_view>

namespace vesk {
namespace {

/// The first that holds: the kind is `kind`, the type begins with "kind/", or the name's extension is one of these.
bool isOfKind(const CapabilityMediaComposeInput& input, const std::string& kind,
              std::initializer_list<std::string_view> extensions) {
    if (input.kind && lowercased(*input.kind) == kind) return true;
    if (input.mimeType && lowercased(*input.mimeType).starts_with(kind + "/")) return true;
    return std::ranges::find(extensions, lowercased(pathExtension(input.fileName.value_or(input.path))))
           != extensions.end();
}

} // namespace

bool isImage(const CapabilityMediaComposeInput& input) {
    return isOfKind(input, "image", {"jpg", "jpeg", "png", "heic", "heif", "webp", "gif"});
}

bool isVideo(const CapabilityMediaComposeInput& input) {
    return isOfKind(input, "video", {"mp4", "m4v", "mov", "quicktime"});
}

std::string displayName(const CapabilityMediaComposeInput& input) {
    return input.fileName.value_or(lastPathComponent(standardizedPath("/" + input.path)));
}

} // namespace vesk
