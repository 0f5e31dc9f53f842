#pragma once

#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/Maildir/MaildirScriptRunner.hpp"
#include "VeskPlatform/Linux/Maildir/MessageReader.hpp"
#include "VeskPlatform/Linux/MainBundle.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <filesystem>
#include <memory>
#include <string>
#include <utime.h>
#include <vector>

namespace vesk::test {

inline const maildir::MessageReader& messageReader() {
    const AdapterModule module(moduleFolderOf(runningExecutable()), "gmime", "libgmime-3.0-0");
    return *module.function<maildir::MessageReaderFunction>("vesk_message_reader")();
}

inline Instant instant(std::int64_t secondsSince1970) { return Instant(std::chrono::seconds(secondsSince1970)); }

/// A folder of mail accounts, a cache folder, and a runner over both with clocks that tick by hand.
class MailFolders {
public:
    TemporaryFolder folder;
    std::vector<std::string> logged;
    MaildirOptions options;
    std::chrono::steady_clock::time_point ticks{};
    /// Later than all that is written, as far as its settling goes.
    Instant now = Instant(std::chrono::duration_cast<std::chrono::milliseconds>(
                      std::chrono::system_clock::now().time_since_epoch()))
                  + std::chrono::hours(1);

    MailFolders() {
        options.root = folder / "mail";
        options.cacheFolder = folder / "cache";
        options.moduleFolder = moduleFolderOf(runningExecutable());
        options.locale = "en_US";
        options.timeZone = "Europe/Berlin";
        options.log = [this](const std::string& message) { logged.push_back(message); };
        options.ticks = [this] { return ticks; };
        options.now = [this] { return now; };
        std::filesystem::create_directories(options.root);
    }

    void makeMaildir(const std::string& name) const {
        for (const char* part : {"/cur", "/new", "/tmp"}) std::filesystem::create_directories(path(name) + part);
    }
    std::string path(const std::string& name) const { return options.root + (name.empty() ? "" : "/" + name); }

    /// Writes a message file such as "home/INBOX/cur/1:2,S".
    std::string write(const std::string& file, const std::string& bytes) const {
        makeMaildir(std::filesystem::path(file).parent_path().parent_path());
        return folder.write("mail/" + file, bytes);
    }

    MailScriptOutcome run(const MailQuestion& question, std::chrono::seconds limit = std::chrono::seconds(12)) {
        return MaildirScriptRunner(options).run({"", limit, question});
    }
    using Fields = std::vector<std::string>;
    std::vector<Fields> rows(const MailQuestion& question) {
        const MailScriptOutcome outcome = run(question);
        std::vector<Fields> result;
        if (const auto* failure = std::get_if<MailScriptFailed>(&outcome))
            throw std::runtime_error(failure->message.value_or("failed"));
        for (const auto& row : std::get<ScriptDescriptor::List>(std::get<ScriptDescriptor>(outcome).value))
            result.push_back(split(row.value_or("")));
        return result;
    }
    /// One field of each row.
    Fields column(const MailQuestion& question, std::size_t field) {
        Fields result;
        for (const Fields& row : rows(question)) result.push_back(row.at(field));
        return result;
    }
    Fields subjects(const MailQuestion& question) { return column(question, 5); }
    Fields recent(std::int64_t limit = 50) { return subjects(MailListQuestion{MailView::recent, limit}); }

private:
    static Fields split(const std::string& row) {
        Fields fields(1);
        for (const char c : row) {
            if (c == '\x1f')
                fields.emplace_back();
            else
                fields.back().push_back(c);
        }
        return fields;
    }
};

/// A plain message, of which a test changes what it is about.
class MailText {
public:
    MailText& subject(std::string text) { return set(subject_, std::move(text)); }
    /// None where it is empty.
    MailText& messageId(std::string text) { return set(messageId_, std::move(text)); }
    MailText& date(std::string text) { return set(date_, std::move(text)); }
    MailText& body(std::string text) { return set(body_, std::move(text)); }

    std::string bytes() const {
        std::string text = "From: Anna Beck <anna@example.org>\nSubject: " + subject_ + "\n";
        if (!messageId_.empty()) text += "Message-ID: <" + messageId_ + ">\n";
        if (!date_.empty()) text += "Date: " + date_ + "\n";
        return text + "\n" + body_ + "\n";
    }

private:
    MailText& set(std::string& field, std::string text) {
        field = std::move(text);
        return *this;
    }

    std::string subject_ = "Hello", messageId_ = "1@example.org", date_ = "Wed, 3 Jun 2026 12:00:00 +0000",
                body_ = "Text";
};

} // namespace vesk::test
