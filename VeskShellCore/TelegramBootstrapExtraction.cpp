#include "VeskShellCore/TelegramBootstrapExtraction.hpp"

#include "VeskSupport/RegularExpression.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>

namespace vesk {
namespace {

constexpr std::string_view nobody = "unknown";

std::optional<std::string> normalizeString(const std::optional<std::string>& value) {
    const auto text = trimmedOrAbsent(value);
    if (!text || *text == nobody) return std::nullopt;
    return text->starts_with('@') ? text->substr(1) : *text;
}

std::vector<std::string> normalizeChatIDs(const std::vector<std::string>& ids) {
    std::vector<std::string> found;
    for (const std::string& id : ids) {
        const std::string text(trimmed(id));
        const bool isNew = std::ranges::find(found, text) == found.end();
        if (!text.empty() && text != nobody && isNew) found.push_back(text);
    }
    return found;
}

/// What a text that cannot be searched has to say is nothing.
std::optional<std::string> firstMatch(std::string_view text, const std::string& pattern) {
    try {
        return normalizeString(firstCapture(text, pattern, LetterCase::matters));
    } catch (const ErrorRecord&) {
        return std::nullopt;
    }
}

const JsonValue* member(const JsonValue& value, std::string_view key) {
    const auto* object = std::get_if<JsonValue::Object>(&value.value);
    if (object == nullptr) return nullptr;
    const auto found = object->find(key);
    return found == object->end() ? nullptr : &found->second;
}

std::optional<std::string> textMember(const JsonValue& value, std::string_view key) {
    const JsonValue* found = member(value, key);
    const auto* text = found == nullptr ? nullptr : std::get_if<std::string>(&found->value);
    return text == nullptr ? std::nullopt : std::optional(*text);
}

/// A list with anything but texts in it is none.
std::vector<std::string> textsMember(const JsonValue& value, std::string_view key) {
    const JsonValue* found = member(value, key);
    const auto* list = found == nullptr ? nullptr : std::get_if<JsonValue::Array>(&found->value);
    std::vector<std::string> texts;
    if (list == nullptr) return texts;
    for (const JsonValue& item : *list) {
        const auto* text = std::get_if<std::string>(&item.value);
        if (text == nullptr) return {};
        texts.push_back(*text);
    }
    return texts;
}

std::optional<JsonValue> parsedJson(const std::string& text) {
    try {
        return parseJson(text);
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

TelegramBootstrapExtraction parsePackagedSetupJSON(std::string_view text) {
    const auto line = firstMatch(text, R"((?m)^Packaged setup JSON:\s+(\{.+\})\s*$)");
    const auto root = line ? parsedJson(*line) : std::nullopt;
    const JsonValue* telegram = root ? member(*root, "telegram") : nullptr;
    if (telegram == nullptr) return {};
    return {.allowedUsername = normalizeString(textMember(*telegram, "allowed_username")),
            .allowedUserID = normalizeString(textMember(*telegram, "allowed_user_id")),
            .allowedChatIDs = normalizeChatIDs(textsMember(*telegram, "allowed_chat_ids"))};
}

TelegramBootstrapExtraction parseLines(std::string_view text) {
    const auto chat = firstMatch(text, R"((?m)^Chat ID:\s+([^\s]+)\s*$)");
    return {.allowedUsername = normalizeString(firstMatch(text, R"((?m)^Telegram account:\s+@?([A-Za-z0-9_]+)\s*$)")),
            .allowedUserID = normalizeString(firstMatch(text, R"((?m)^User ID:\s+([^\s]+)\s*$)")),
            .allowedChatIDs = normalizeChatIDs(chat ? std::vector{*chat} : std::vector<std::string>())};
}

} // namespace

std::optional<TelegramBootstrapExtraction> TelegramBootstrapExtraction::parse(std::string_view text) {
    const std::string_view searched = trimmed(text);
    if (searched.empty()) return std::nullopt;
    auto found = parsePackagedSetupJSON(searched);
    if (found.isEmpty()) found = parseLines(searched);
    return found.isEmpty() ? std::nullopt : std::optional(std::move(found));
}

} // namespace vesk
