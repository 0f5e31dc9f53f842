#include "VeskShellCore/ReleaseChannelPolicy.hpp"

#include "VeskSupport/RegularExpression.hpp"

namespace vesk::ReleaseChannelPolicy {
namespace {

std::string channelFolder(const std::string& origin, const std::string& channel) {
    return origin + "/macos/" + channel;
}

std::optional<std::string> inChannelFolder(const std::string& origin, const std::string& channel, const char* name) {
    if (!isSupported(channel)) return std::nullopt;
    return channelFolder(origin, channel) + name;
}

} // namespace

bool isSupported(std::string_view channel) { return channel == stable || channel == beta; }

bool isVersion(const std::string& version, std::string_view channel) {
    const std::string pattern =
        channel == beta ? R"(^[0-9]+\.[0-9]+\.[0-9]+-beta\.[1-9][0-9]*$)" : R"(^[0-9]+\.[0-9]+\.[0-9]+$)";
    // The end of a line is an end for the pattern, too, but none of the text.
    return isSupported(channel) && containsMatch(version, pattern, LetterCase::matters)
           && std::string_view("0123456789").find(version.back()) != std::string_view::npos;
}

std::optional<std::string> manifestURL(const std::string& origin, const std::string& channel) {
    return inChannelFolder(origin, channel, "/latest.json");
}

std::optional<std::string> sparkleFeedURL(const std::string& origin, const std::string& channel) {
    return inChannelFolder(origin, channel, "/appcast.xml");
}

std::optional<ReleaseURLs> releaseURLs(const std::string& origin, const std::string& channel,
                                       const std::string& version) {
    if (!isSupported(channel)) return std::nullopt;
    const std::string folder = channelFolder(origin, channel) + "/versions/" + version,
                      file = folder + "/Vesk-" + version;
    return ReleaseURLs{.appcast = folder + "/appcast.xml",
                       .releaseNotes = folder + "/release-notes.html",
                       .diskImage = file + ".dmg",
                       .archive = file + ".zip"};
}

bool manifestMatchesInstalledChannel(std::string_view installedChannel, std::string_view manifestChannel) {
    return isSupported(installedChannel) && isSupported(manifestChannel) && installedChannel == manifestChannel;
}

bool manifestPayloadMatchesInstalledChannel(const std::string& origin, const std::string& installedChannel,
                                            const ManifestPayload& manifest) {
    if (!manifestMatchesInstalledChannel(installedChannel, manifest.channel)) return false;
    if (!isVersion(manifest.version, manifest.channel)) return false;
    const auto expected = releaseURLs(origin, manifest.channel, manifest.version);
    return manifest.appcastURL == expected->appcast && manifest.releaseNotesURL == expected->releaseNotes
           && manifest.dmgURL == expected->diskImage && manifest.zipURL == expected->archive;
}

} // namespace vesk::ReleaseChannelPolicy
