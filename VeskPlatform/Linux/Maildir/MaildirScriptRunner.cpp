#include "VeskPlatform/Linux/Maildir/MaildirScriptRunner.hpp"

#include "VeskPlatform/Linux/AdapterModule.hpp"
#include "VeskPlatform/Linux/Maildir/MailAnswers.hpp"
#include "VeskPlatform/Linux/Maildir/MailIndex.hpp"
#include "VeskPlatform/Linux/Maildir/MaildirTree.hpp"
#include "VeskPlatform/Linux/Maildir/MessageReader.hpp"
#include "VeskPlatform/Linux/SqliteConnection.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <cerrno>
#include <filesystem>
#include <optional>

namespace vesk {
namespace {

using namespace maildir;

/// The mail program's own words; the access status knows them.
constexpr const char* timedOut = "Mail got an error: AppleEvent timed out.";
constexpr const char* noMail = "There is no mail folder; set VESK_MAIL_DIR, or put accounts into ~/Maildir.";

/// One script from question to answer.
class ScriptRun {
public:
    ScriptRun(const MaildirOptions& options, const MailScript& script)
        : options_(options), deadline_{options.ticks, options.ticks() + script.timeLimit},
          tools_{[this]() -> const MessageReader& { return reader(); }, options.now, options.log} {
        const auto unreadable = [&](const std::string&, int errnoValue) {
            options_.log("mail-store folder unreadable errno=" + std::to_string(errnoValue));
        };
        folders_ = findMailFolders(options.root, unreadable, [this, visited = 0]() mutable {
            constexpr int foldersBetweenChecks = 64; // a root may be anything, a whole disk among them
            if (++visited % foldersBetweenChecks == 0) deadline_.check();
        });
    }

    ScriptDescriptor answer(const MailProbeQuestion&) {
        deadline_.check(); // the walk over all folders has shown that they can be read
        return {std::optional<std::string>("ok")};
    }

    template <class Question> ScriptDescriptor answer(const Question& question) {
        return {withDatabase([&](MailDatabase& database) {
            return MailAnswers(database, {folders_, options_.root, options_.locale, options_.timeZone}, tools_,
                               deadline_)
                .rows(question);
        })};
    }

private:
    const MessageReader& reader() {
        if (reader_ == nullptr) {
            const AdapterModule module(options_.moduleFolder, "gmime", "libgmime-3.0-0");
            reader_ = module.function<MessageReaderFunction>("vesk_message_reader")();
        }
        return *reader_;
    }

    /// What `use` returns with the kept index; where that is of no use with a new one, else with one in memory.
    template <class Use> ScriptDescriptor::List withDatabase(Use use) {
        if (!options_.cacheFolder.empty()) {
            const std::string path = options_.cacheFolder + "/mail.sqlite";
            if (auto rows = tried(path, use)) return *rows;
            std::error_code unreachable;
            if (!std::filesystem::exists(path, unreachable))
                if (auto rows = tried(path, use)) return *rows;
        }
        MailDatabase database("");
        return use(database);
    }

    /// None where the file cannot be used; one that never will be is gone then.
    template <class Use> std::optional<ScriptDescriptor::List> tried(const std::string& path, Use use) {
        try {
            MailDatabase database(path);
            return use(database);
        } catch (const SqliteFailure& failure) {
            std::error_code ignored;
            if (failure.isOfNoUse())
                for (const char* ending : {"", "-wal", "-shm", "-journal"})
                    std::filesystem::remove(path + ending, ignored);
            return std::nullopt;
        }
    }

    const MaildirOptions& options_;
    const Deadline deadline_;
    const MailIndexTools tools_;
    std::vector<MailFolder> folders_;
    const MessageReader* reader_ = nullptr;
};

} // namespace

MailScriptOutcome MaildirScriptRunner::run(const MailScript& script) {
    if (options_.root.empty()) return MailScriptFailed{noMail};
    try {
        ScriptRun run(options_, script);
        return std::visit([&](const auto& question) { return run.answer(question); }, script.question);
    } catch (const OutOfTime&) {
        return MailScriptFailed{timedOut};
    } catch (const ErrorRecord& error) {
        const bool rootIsMissing = dynamic_cast<const PosixError*>(&error) != nullptr && error.code() == ENOENT;
        return MailScriptFailed{rootIsMissing ? noMail : error.description()};
    }
}

} // namespace vesk
