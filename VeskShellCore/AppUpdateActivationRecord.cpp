#include "VeskShellCore/AppUpdateActivationRecord.hpp"

#include "VeskSupport/Text.hpp"

namespace vesk {

AppUpdateReleaseIdentity::AppUpdateReleaseIdentity(std::string_view versionText, std::string_view buildText,
                                                   std::string_view channelText)
    : version(trimmed(versionText)), build(trimmed(buildText)), channel(trimmed(channelText)) {}

void read(JsonValue& json, const records::Path& path, AppUpdateReleaseIdentity& out) {
    records::read<AppUpdateReleaseIdentity>(json, path, out);
    out = AppUpdateReleaseIdentity(out.version, out.build, out.channel);
}

AppUpdateReleaseIdentity AppUpdateActivationRecord::sourceIdentity() const {
    return {sourceVersion, sourceBuild, channel};
}

AppUpdateReleaseIdentity AppUpdateActivationRecord::targetIdentity() const {
    return {targetVersion, targetBuild, channel};
}

} // namespace vesk
