#pragma once

#include <optional>
#include <string>
#include <string_view>

/// Which update channels there are, where the feed of each lies, and whether a published manifest belongs to the
/// installed channel. Comparisons are exact: no case folding, no normalizing of addresses. `origin` is the address of
/// the release server without a slash at its end, such as "https://updates.vesk.example". Nothing here fails: an
/// unknown channel has no addresses and matches nothing.
namespace vesk::ReleaseChannelPolicy {

inline constexpr std::string_view stable = "stable", beta = "beta";

bool isSupported(std::string_view channel);

/// Whether `version` is written as the channel's versions are: "1.4.2" for stable, "1.4.2-beta.1" for beta.
bool isVersion(const std::string& version, std::string_view channel);

std::optional<std::string> manifestURL(const std::string& origin, const std::string& channel);
/// The feed of the updater.
std::optional<std::string> sparkleFeedURL(const std::string& origin, const std::string& channel);

/// The addresses of one release.
struct ReleaseURLs {
    std::string appcast;
    std::string releaseNotes;
    std::string diskImage;
    std::string archive;
};
/// None for an unknown channel. The version is taken as it is.
std::optional<ReleaseURLs> releaseURLs(const std::string& origin, const std::string& channel,
                                       const std::string& version);

/// No installation is ever offered what another channel published.
bool manifestMatchesInstalledChannel(std::string_view installedChannel, std::string_view manifestChannel);

/// What a manifest says of a release.
struct ManifestPayload {
    std::string channel;
    std::string version;
    std::optional<std::string> appcastURL;
    std::optional<std::string> releaseNotesURL;
    std::optional<std::string> dmgURL;
    std::optional<std::string> zipURL;
};
/// Whether the manifest is of the installed channel, and each of its addresses is the very one that the policy knows.
bool manifestPayloadMatchesInstalledChannel(const std::string& origin, const std::string& installedChannel,
                                            const ManifestPayload& manifest);

} // namespace vesk::ReleaseChannelPolicy
