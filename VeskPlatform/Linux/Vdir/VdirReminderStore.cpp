#include "VeskPlatform/Linux/Vdir/VdirReminderStore.hpp"

#include "VeskPlatform/Linux/RandomUuid.hpp"
#include "VeskPlatform/Linux/Vdir/CollectionTree.hpp"
#include "VeskPlatform/Linux/Vdir/FileReplacement.hpp"
#include "VeskPlatform/Linux/Vdir/Folder.hpp"
#include "VeskPlatform/Linux/Vdir/Parallel.hpp"
#include "VeskPlatform/Linux/Vdir/TodoComponent.hpp"
#include "VeskPlatform/Linux/Vdir/TodoEdit.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <libical/ical.h>
#include <map>
#include <set>

namespace vesk {
namespace {

using namespace vdir;
using Deadline = std::chrono::steady_clock::time_point;

constexpr const char* extension = ".ics";
constexpr const char* localSource = "local";
constexpr const char* accountPrefix = "account/";

bool isInAccount(const Collection& collection) { return collection.identifier.find('/') != std::string::npos; }

std::string sourceOf(const Collection& collection) {
    return isInAccount(collection) ? accountPrefix + collection.sourceTitle : localSource;
}

ReminderList listOf(const Collection& collection) {
    return {collection.identifier, collection.title, sourceOf(collection)};
}

std::string parentOf(const std::string& path) { return path.substr(0, path.rfind('/')); }

/// A name for the folder of a list: its title's letters and digits in lower case, with hyphens between the words.
std::string folderNameFor(const std::string& title) {
    constexpr std::size_t longestName = 100;
    std::string name = joined(alphanumericRuns(lowercased(title)), "-");
    std::size_t length = std::min(name.size(), longestName);
    while (length > 0 && length < name.size() && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) --length;
    name.resize(length);
    return name.empty() ? "list" : name;
}

/// The to-do of that UID in a file: not one of its overrides.
const ScannedTodo* todoNamed(const CalendarFile& file, const std::string& uid) {
    const auto found = std::ranges::find_if(
        file.scanned.todos, [&](const ScannedTodo& todo) { return todo.uid == uid && !todo.isOverride; });
    return found == file.scanned.todos.end() ? nullptr : &*found;
}

/// A file that vanished meanwhile is none that anything is amiss with.
FileHealth healthOf(const std::string& path) {
    int errnoValue = 0;
    const auto file = readCalendarFile(path, &errnoValue);
    if (!file) return errnoValue == ENOENT ? FileHealth::whole : FileHealth::unreadable;
    const bool isDamaged =
        file->scanned.damaged || std::ranges::any_of(file->scanned.todos, &std::string::empty, &ScannedTodo::uid);
    return isDamaged ? FileHealth::damaged : FileHealth::whole;
}

/// A to-do and the file that it is in.
struct Located {
    std::string path;
    CalendarFile file;
    Reminder reminder;
};

ErrorRecord gone() { return {"VdirReminderStore", 404, "The to-do does not exist any more."}; }

ErrorRecord unsettled() {
    return {"VdirReminderStore", 409, "The to-do is being changed by another program. Try again."};
}

/// How often a change starts over because another program was faster.
constexpr int maximumAttempts = 10;

} // namespace

struct VdirReminderStore::State {
    State(VdirReminderStoreOptions chosen, Clock& systemClock)
        : options(std::move(chosen)), clock(systemClock),
          zones(std::make_shared<LocalCalendar>(options.timeZone), options.log) {
        icalerror_set_errors_are_fatal(0); // a bad file is no reason to abort
    }

    const std::vector<Collection>& collections() {
        if (!found)
            found = findCollections(options.root, extension, [&](const std::string&, int errnoValue) {
                options.log("reminder-store folder unreadable errno=" + std::to_string(errnoValue));
            });
        return *found;
    }

    const Collection* collectionNamed(const std::string& identifier) {
        const auto& all = collections();
        const auto collection = std::ranges::find(all, identifier, &Collection::identifier);
        return collection == all.end() ? nullptr : &*collection;
    }

    std::optional<Reminder> parsed(const CalendarFile& file, const ScannedTodo& todo, const Collection& collection) {
        auto reminder = parseTodo(file, todo, zones);
        if (reminder) reminder->listIdentifier = collection.identifier;
        return reminder;
    }

    /// The to-dos of each file, in the order of the names; none where the deadline passed.
    std::optional<std::vector<std::vector<Reminder>>> read(const Collection& collection,
                                                           const std::vector<std::string>& names, Deadline deadline) {
        std::vector<std::vector<Reminder>> perFile(names.size());
        std::atomic<std::size_t> damaged{0}, unreadable{0};
        std::atomic<bool> late{false};
        inParallel(names.size(), 32, [&](std::size_t i) {
            if (late || std::chrono::steady_clock::now() > deadline) {
                late = true;
                return;
            }
            const auto file = readCalendarFile(collection.path + "/" + names[i]);
            if (!file || file->scanned.damaged) ++(file ? damaged : unreadable);
            if (!file) return;
            for (const ScannedTodo& todo : file->scanned.todos) {
                if (todo.uid.empty() || todo.isOverride) continue;
                if (auto reminder = parsed(*file, todo, collection)) perFile[i].push_back(std::move(*reminder));
            }
        });
        logPassedOver("damaged", damaged);
        logPassedOver("unreadable", unreadable);
        if (late) return std::nullopt;
        return perFile;
    }

    void logPassedOver(const std::string& kind, std::size_t count) const {
        if (count > 0) options.log("reminder-store files passed-over kind=" + kind + " count=" + std::to_string(count));
    }

    /// The first file by name that has the to-do.
    std::optional<Located> locate(const std::string& uid, const Collection& collection) {
        const std::vector<std::string> names = sortedFileNames(collection.path, extension);
        std::vector<char> has(names.size(), 0);
        inParallel(names.size(), 32, [&](std::size_t i) {
            const auto file = readCalendarFile(collection.path + "/" + names[i]);
            if (file && todoNamed(*file, uid) != nullptr) has[i] = 1;
        });
        for (std::size_t i = 0; i < names.size(); ++i) {
            if (has[i] == 0) continue;
            const std::string path = collection.path + "/" + names[i];
            auto file = readCalendarFile(path);
            const ScannedTodo* todo = file ? todoNamed(*file, uid) : nullptr;
            auto reminder = todo != nullptr ? parsed(*file, *todo, collection) : std::nullopt;
            if (reminder) return Located{path, std::move(*file), std::move(*reminder)};
        }
        return std::nullopt;
    }

    Reminder remembered(Reminder reminder) {
        given.insert_or_assign({reminder.listIdentifier, reminder.identifier}, reminder);
        return reminder;
    }

    Reminder create(const Reminder& wanted) {
        const Collection* collection = collectionNamed(wanted.listIdentifier);
        if (collection == nullptr)
            throw ErrorRecord("VdirReminderStore", 404, "The to-do list does not exist any more.");
        const std::string uid = randomUuid();
        CalendarFile file{newTodoText(wanted, uid, clock.now()), {}};
        file.scanned = scanCalendarText(file.bytes);
        auto saved = parsed(file, file.scanned.todos.front(), *collection);
        if (!saved) throw ErrorRecord("VdirReminderStore", 400, "The to-do cannot be written.");
        createFileDurably(collection->path, uid + ".ics", file.bytes);
        return remembered(std::move(*saved));
    }

    Located require(const Reminder& reminder) {
        const Collection* collection = collectionNamed(reminder.listIdentifier);
        auto located = collection == nullptr ? std::nullopt : locate(reminder.identifier, *collection);
        if (!located) throw gone();
        return std::move(*located);
    }

    /// None where another program was faster.
    std::optional<Reminder> tryChange(const Reminder& wanted, FolderTurn& turn) {
        const Located located = require(wanted);
        const auto known = given.find({wanted.listIdentifier, wanted.identifier});
        const Reminder& base = known == given.end() ? located.reminder : known->second;
        CalendarFile changed{editedTodoText(located.file, *todoNamed(located.file, wanted.identifier), base,
                                            located.reminder, wanted, clock.now()),
                             {}};
        if (changed.bytes == located.file.bytes) return located.reminder;
        changed.scanned = scanCalendarText(changed.bytes);
        const ScannedTodo* todo = todoNamed(changed, wanted.identifier);
        auto saved = todo == nullptr ? std::nullopt : parsed(changed, *todo, *collectionNamed(wanted.listIdentifier));
        if (!saved) throw ErrorRecord("VdirReminderStore", 400, "The to-do cannot be written.");
        if (!replaceFileDurably(located.path, located.file.bytes, changed.bytes, turn)) return std::nullopt;
        return saved;
    }

    /// False where another program was faster.
    bool tryRemove(const Reminder& reminder, FolderTurn& turn) {
        const Located located = require(reminder);
        const std::string rest = textWithoutTodo(located.file, reminder.identifier);
        const ScannedFile left = scanCalendarText(rest);
        if (left.todos.empty() && left.events.empty()) return removeFileDurably(located.path, located.file.bytes, turn);
        return replaceFileDurably(located.path, located.file.bytes, rest, turn);
    }

    std::string folderOf(const std::string& sourceIdentifier) {
        if (sourceIdentifier == localSource) {
            makeFolders(options.root);
            return options.root;
        }
        for (const Collection& collection : collections())
            if (sourceOf(collection) == sourceIdentifier) return parentOf(collection.path);
        throw PosixError(ENOENT, options.root + "/" + sourceIdentifier.substr(sourceIdentifier.find('/') + 1));
    }

    /// The list in that folder, where it is none of those of `before`.
    std::optional<ReminderList> madeSince(const std::vector<Collection>& before, const std::string& path) {
        if (std::ranges::find(before, path, &Collection::path) != before.end()) return std::nullopt;
        found.reset();
        const auto& all = collections();
        const auto made = std::ranges::find(all, path, &Collection::path);
        return made == all.end() ? std::nullopt : std::optional(listOf(*made));
    }

    VdirReminderStoreOptions options;
    Clock& clock;
    Zones zones;
    std::optional<std::vector<Collection>> found;
    /// What callers have, by list and UID: what they change is told by the difference to it.
    std::map<std::pair<std::string, std::string>, Reminder> given;
};

VdirReminderStore::VdirReminderStore(VdirReminderStoreOptions options, Clock& clock)
    : state_(std::make_unique<State>(std::move(options), clock)) {}

VdirReminderStore::~VdirReminderStore() = default;

std::vector<ReminderList> VdirReminderStore::lists() {
    std::vector<ReminderList> result;
    for (const Collection& collection : state_->collections()) result.push_back(listOf(collection));
    return result;
}

std::optional<ReminderList> VdirReminderStore::defaultList() {
    const auto& all = state_->collections();
    const auto writable = std::ranges::find(all, true, &Collection::writable);
    return writable == all.end() ? std::nullopt : std::optional(listOf(*writable));
}

std::vector<ReminderSource> VdirReminderStore::sources() {
    std::vector<ReminderSource> result{{localSource, "On This Computer", 0}};
    for (const Collection& collection : state_->collections()) {
        ReminderSource source{sourceOf(collection), collection.sourceTitle, 0};
        if (std::ranges::find(result, source.identifier, &ReminderSource::identifier) == result.end())
            result.push_back(std::move(source));
    }
    return result;
}

ReminderList VdirReminderStore::createList(const std::string& title,
                                           const std::optional<std::string>& sourceIdentifier) {
    const std::vector<Collection> before = state_->collections();
    const std::string folder = state_->folderOf(sourceIdentifier.value_or(localSource));
    const std::string base = folderNameFor(title);
    std::string name = base;
    for (int number = 2; !createFolderDurably(folder, name, "displayname", title); ++number) {
        const auto theirs = state_->madeSince(before, folder + "/" + name);
        if (theirs && theirs->title == title) return *theirs;
        name = base + "-" + std::to_string(number);
    }
    if (const auto made = state_->madeSince(before, folder + "/" + name)) return *made;
    throw PosixError(ENOENT, folder + "/" + name);
}

std::optional<std::vector<Reminder>> VdirReminderStore::reminders(const std::string& listIdentifier,
                                                                  std::chrono::seconds limit) {
    const Deadline deadline = std::chrono::steady_clock::now() + limit;
    const Collection* collection = state_->collectionNamed(listIdentifier);
    if (collection == nullptr) return std::vector<Reminder>{};
    auto perFile = state_->read(*collection, sortedFileNames(collection->path, extension), deadline);
    if (!perFile) return std::nullopt;
    std::vector<Reminder> result;
    std::set<std::string> seen;
    for (auto& reminders : *perFile)
        for (Reminder& reminder : reminders)
            if (seen.insert(reminder.identifier).second) result.push_back(state_->remembered(std::move(reminder)));
    return result;
}

std::optional<Reminder> VdirReminderStore::reminder(const std::string& identifier) {
    if (identifier.empty()) return std::nullopt;
    for (const Collection& collection : state_->collections())
        if (auto located = state_->locate(identifier, collection))
            return state_->remembered(std::move(located->reminder));
    return std::nullopt;
}

Reminder VdirReminderStore::save(const Reminder& reminder) {
    if (reminder.identifier.empty()) return state_->create(reminder);
    FolderTurn turn;
    for (int i = 0; i < maximumAttempts; ++i)
        if (auto saved = state_->tryChange(reminder, turn)) return state_->remembered(std::move(*saved));
    throw unsettled();
}

void VdirReminderStore::remove(const Reminder& reminder) {
    FolderTurn turn;
    for (int i = 0; i < maximumAttempts; ++i)
        if (state_->tryRemove(reminder, turn)) return;
    throw unsettled();
}

VdirSurvey VdirReminderStore::survey(const std::string& root) { return surveyOf(root, extension, healthOf); }

} // namespace vesk
