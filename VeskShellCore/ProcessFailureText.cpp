#include "VeskShellCore/ProcessFailureText.hpp"

#include "VeskSupport/RegularExpression.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <array>
#include <vector>

namespace vesk {
namespace {

constexpr std::string_view staleRuntime =
    "Your local packaged runtime is stale. Relaunch the shell through `pnpm shell:run` so it rebuilds the packaged "
    "runtime first.";

std::vector<std::string_view> meaningfulLines(std::string_view text) {
    std::vector<std::string_view> found;
    for (const std::string_view line : lines(text))
        if (const std::string_view rest = trimmed(line); !rest.empty()) found.push_back(rest);
    return found;
}

std::string fatalErrorText(std::string_view line) {
    constexpr std::string_view label = "Error: ";
    const std::size_t place = line.find(label);
    if (place == std::string_view::npos) return std::string(line);
    const std::string_view text = trimmed(line.substr(place + label.size()));
    return std::string(text.find("Unknown command:") == std::string_view::npos ? text : staleRuntime);
}

} // namespace

std::string summarizeProcessFailure(std::string_view standardError) {
    const auto found = meaningfulLines(standardError);
    const auto isFatal = [](std::string_view line) {
        return lowercased(line).find("fatal error") != std::string::npos;
    };
    if (const auto fatal = std::ranges::find_if(found, isFatal); fatal != found.end()) return fatalErrorText(*fatal);
    const auto isNoFrame = [](std::string_view line) { return !line.starts_with("at "); };
    if (const auto first = std::ranges::find_if(found, isNoFrame); first != found.end()) return std::string(*first);
    return std::string(trimmed(standardError));
}

} // namespace vesk

namespace vesk::VeskProductSurfaceText {
namespace {

constexpr std::array<std::string_view, 28> internalPhrases{"api key",
                                                           "auth base url",
                                                           "backend",
                                                           "callback",
                                                           "capability broker",
                                                           "cli response",
                                                           "credentials path",
                                                           "daemon",
                                                           "grant token",
                                                           "inference provider",
                                                           "keychain",
                                                           "launchagent",
                                                           "launchctl",
                                                           "locked provider",
                                                           "native control bridge",
                                                           "oauth",
                                                           "openai",
                                                           "openrouter",
                                                           "osstatus",
                                                           "packaged runtime",
                                                           "plist",
                                                           "pnpm ",
                                                           "process env",
                                                           "provider_api_key_missing",
                                                           "runtime manifest",
                                                           "secret",
                                                           "status check failed",
                                                           "telnyx"};

} // namespace

bool containsInternalLeak(std::string_view text) {
    const std::string lower = lowercased(text);
    const auto isWithin = [&](std::string_view phrase) { return lower.find(phrase) != std::string::npos; };
    if (std::ranges::any_of(internalPhrases, isWithin)) return true;
    return containsMatch(text, R"(\b[A-Z][A-Z0-9_]{4,}\b)", LetterCase::matters);
}

std::string sanitizeUserFacing(const std::optional<std::string>& text, const std::string& fallback) {
    const std::string_view shown = trimmed(text ? std::string_view(*text) : std::string_view());
    return shown.empty() || containsInternalLeak(shown) ? fallback : std::string(shown);
}

} // namespace vesk::VeskProductSurfaceText
