#pragma once

#include "VeskPlatform/MailScriptRunner.hpp"
#include "VeskSupport/Instant.hpp"

#include <chrono>
#include <functional>
#include <string>

namespace vesk {

struct MaildirOptions {
    std::string root;         ///< Of the mail accounts; empty where the user has none.
    std::string cacheFolder;  ///< Where the index is kept; empty keeps none.
    std::string moduleFolder; ///< As AdapterModule takes it.
    std::string locale, timeZone;
    std::function<void(const std::string& message)> log;
    /// Times that grow steadily, for time limits.
    std::function<std::chrono::steady_clock::time_point()> ticks = std::chrono::steady_clock::now;
    std::function<Instant()> now;
};

/// Answers what scripts ask of the mail program from Maildir accounts (https://cr.yp.to/proto/maildir.html). Messages
/// come newest first, those of one moment in the order of their mailboxes. Answers rest on an index of headers,
/// `mail.sqlite` in the cache folder, which is brought up to date before each; a damaged one is made anew, and one that
/// cannot be used is done without. Headers and contents are read with GMime, in a module that is loaded only for
/// messages that the index does not know yet. `timeLimit` bounds the whole answer; what was read until then is kept.
class MaildirScriptRunner : public MailScriptRunner {
public:
    explicit MaildirScriptRunner(MaildirOptions options) : options_(std::move(options)) {}
    MailScriptOutcome run(const MailScript& script) override;

private:
    MaildirOptions options_;
};

} // namespace vesk
