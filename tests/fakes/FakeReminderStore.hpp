#pragma once

#include "VeskPlatform/ReminderStore.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>

namespace vesk::test {

/// Lists and to-dos in memory. Each call is recorded by its name, in order.
class FakeReminderStore : public ReminderStore {
public:
    std::vector<ReminderSource> storedSources{{"local", "On This Computer", 0}};
    std::vector<ReminderList> storedLists;
    std::vector<Reminder> stored;
    std::optional<std::string> defaultIdentifier;
    /// Thrown by the next calls of their kind, if set.
    std::optional<ErrorRecord> createFailure, saveFailure, removeFailure;
    /// What happens to a fetch: an answer, or none within the limit.
    bool answers = true;
    std::optional<std::chrono::seconds> askedLimit;
    /// What completing writes down.
    Instant completionTime{};
    std::vector<std::string> calls;

    std::vector<ReminderList> lists() override {
        calls.emplace_back("lists");
        return storedLists;
    }
    std::optional<ReminderList> defaultList() override {
        const auto found = std::ranges::find(storedLists, defaultIdentifier,
                                             [](const auto& list) { return std::optional(list.identifier); });
        return found == storedLists.end() ? std::nullopt : std::optional(*found);
    }
    std::vector<ReminderSource> sources() override { return storedSources; }
    ReminderList createList(const std::string& title, const std::optional<std::string>& source) override {
        calls.push_back("createList " + title + " in " + source.value_or("nowhere"));
        if (createFailure) throw *createFailure;
        return storedLists.emplace_back(ReminderList{"list-" + title, title, source.value_or("")});
    }
    std::optional<std::vector<Reminder>> reminders(const std::string& list, std::chrono::seconds limit) override {
        calls.emplace_back("reminders");
        askedLimit = limit;
        if (!answers) return std::nullopt;
        std::vector<Reminder> result;
        std::ranges::copy_if(stored, std::back_inserter(result),
                             [&](const Reminder& reminder) { return reminder.listIdentifier == list; });
        return result;
    }
    std::optional<Reminder> reminder(const std::string& identifier) override {
        calls.emplace_back("reminder");
        const auto found = std::ranges::find(stored, identifier, &Reminder::identifier);
        return found == stored.end() ? std::nullopt : std::optional(*found);
    }
    Reminder save(const Reminder& given) override {
        calls.emplace_back("save");
        if (saveFailure) throw *saveFailure;
        Reminder saved = given;
        if (saved.completed && !saved.completionDate) saved.completionDate = completionTime;
        if (saved.identifier.empty()) {
            saved.identifier = "saved-" + std::to_string(stored.size() + 1);
            return stored.emplace_back(saved);
        }
        *std::ranges::find(stored, saved.identifier, &Reminder::identifier) = saved;
        return saved;
    }
    void remove(const Reminder& reminder) override {
        calls.emplace_back("remove");
        if (removeFailure) throw *removeFailure;
        std::erase_if(stored, [&](const Reminder& each) { return each.identifier == reminder.identifier; });
    }
};

} // namespace vesk::test
