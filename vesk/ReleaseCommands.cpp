#include "vesk/ReleaseCommands.hpp"

#include "VeskPlatform/FileReader.hpp"
#include "VeskShellCore/ReleaseChannelPolicy.hpp"
#include "VeskShellCore/TelegramBootstrapExtraction.hpp"
#include "vesk/StandardInput.hpp"
#include "vesk/Version.hpp"

namespace vesk {

using ReleaseChannelPolicy::ManifestPayload;

template <>
inline constexpr auto recordTable<ManifestPayload> =
    recordFields(required("channel", &ManifestPayload::channel), required("version", &ManifestPayload::version),
                 optional("appcast_url", &ManifestPayload::appcastURL),
                 optional("release_notes_url", &ManifestPayload::releaseNotesURL),
                 optional("dmg_url", &ManifestPayload::dmgURL), optional("zip_url", &ManifestPayload::zipURL));

struct ChannelMatch {
    bool matches = false;
};

template <> inline constexpr auto recordTable<ChannelMatch> = recordFields(required("matches", &ChannelMatch::matches));

struct ChannelAddresses {
    std::string manifest;
    std::string appcast;
    std::optional<std::string> releaseAppcast;
    std::optional<std::string> releaseNotes;
    std::optional<std::string> dmg;
    std::optional<std::string> zip;
};

template <>
inline constexpr auto recordTable<ChannelAddresses> =
    recordFields(required("manifest", &ChannelAddresses::manifest), required("appcast", &ChannelAddresses::appcast),
                 optional("releaseAppcast", &ChannelAddresses::releaseAppcast),
                 optional("releaseNotes", &ChannelAddresses::releaseNotes), optional("dmg", &ChannelAddresses::dmg),
                 optional("zip", &ChannelAddresses::zip));

namespace {

constexpr std::uint64_t mostTextBytes = std::uint64_t{64} << 20;

[[noreturn]] void refuse(const std::string& description) { throw ErrorRecord("VeskReleaseChannel", 64, description); }

ChannelMatch check(const ChannelCommand& command, Platform& platform, const std::string& origin) {
    const std::string text = platform.fileReader().contents(command.manifestFile, mostTextBytes);
    const auto manifest = fromJson<ManifestPayload>(parseJson(text));
    return {ReleaseChannelPolicy::manifestPayloadMatchesInstalledChannel(origin, command.channel, manifest)};
}

ChannelAddresses addresses(const ChannelCommand& command, const std::string& origin) {
    const auto manifest = ReleaseChannelPolicy::manifestURL(origin, command.channel);
    const auto appcast = ReleaseChannelPolicy::sparkleFeedURL(origin, command.channel);
    if (!manifest || !appcast) refuse("There is no release channel \"" + command.channel + "\".");
    ChannelAddresses found;
    found.manifest = *manifest;
    found.appcast = *appcast;
    if (!command.version) return found;
    if (!ReleaseChannelPolicy::isVersion(*command.version, command.channel))
        refuse("\"" + *command.version + "\" is no version of the channel \"" + command.channel + "\".");
    const auto release = ReleaseChannelPolicy::releaseURLs(origin, command.channel, *command.version);
    found.releaseAppcast = release->appcast;
    found.releaseNotes = release->releaseNotes;
    found.dmg = release->diskImage;
    found.zip = release->archive;
    return found;
}

} // namespace

std::string runChannel(const ChannelCommand& command, Platform& platform) {
    const std::string origin = builtVersion().releaseOrigin;
    const JsonValue answer = command.verb == ChannelVerb::check ? toJson(check(command, platform, origin))
                                                                : toJson(addresses(command, origin));
    return writeJson(answer) + "\n";
}

std::string runTelegramBootstrap(const TelegramBootstrapCommand&, Platform&) {
    const auto found = TelegramBootstrapExtraction::parse(readTextFromStandardInput(mostTextBytes));
    return writeJson(found ? toJson(*found) : JsonValue{JsonValue::Object{}}) + "\n";
}

} // namespace vesk
