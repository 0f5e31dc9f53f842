#include "VeskSupport/ErrorRecord.hpp"

#include <system_error>

namespace vesk {

ErrorRecord::ErrorRecord(std::string domain, std::int64_t code, std::string description,
                         std::shared_ptr<const ErrorRecord> underlying)
    : domain_(std::move(domain)), code_(code), description_(std::move(description)),
      underlying_(std::move(underlying)) {}

std::string ErrorRecord::rendering() const {
    const std::string text = onOneLine(description_);
    return "Error Domain=" + domain_ + " Code=" + std::to_string(code_) + " \"" + text
           + "\" UserInfo={NSLocalizedDescription=" + text + "}";
}

namespace {

constexpr const char* posixDomain = "NSPOSIXErrorDomain";

std::string posixDescription(int errnoValue, std::string_view path) {
    std::string text = std::generic_category().message(errnoValue);
    return path.empty() ? text : std::string(path) + ": " + text;
}

} // namespace

PosixError::PosixError(int errnoValue, std::string_view path)
    : ErrorRecord(posixDomain, errnoValue, posixDescription(errnoValue, path)) {}

std::optional<int> systemErrorNumber(const ErrorRecord& error) {
    for (const ErrorRecord* cause = &error; cause != nullptr; cause = cause->underlying())
        if (cause->domain() == posixDomain) return static_cast<int>(cause->code());
    return std::nullopt;
}

std::string onOneLine(std::string_view text) {
    static constexpr std::string_view nextLine = "\xC2\x85", lineSeparator = "\xE2\x80\xA8",
                                      paragraphSeparator = "\xE2\x80\xA9";
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size();) {
        const std::string_view rest = text.substr(i);
        std::size_t width = 0;
        if (rest.starts_with("\r\n"))
            width = 2;
        else if (rest[0] >= '\n' && rest[0] <= '\r')
            width = 1;
        else if (rest.starts_with(nextLine))
            width = nextLine.size();
        else if (rest.starts_with(lineSeparator) || rest.starts_with(paragraphSeparator))
            width = lineSeparator.size();
        result.push_back(width == 0 ? rest[0] : ' ');
        i += width == 0 ? 1 : width;
    }
    return result;
}

} // namespace vesk
