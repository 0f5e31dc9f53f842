#pragma once

#include "VeskPlatform/Linux/Vdir/VdirReminderStore.hpp"
#include "tests/fakes/FakeBasics.hpp"
#include "tests/support/TemporaryFolder.hpp"

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <gtest/gtest.h>

namespace vesk::test {

inline std::string calendar(const std::string& inner) {
    return "BEGIN:VCALENDAR\nVERSION:2.0\n" + inner + "END:VCALENDAR\n";
}
inline std::string todo(const std::string& lines) { return calendar("BEGIN:VTODO\n" + lines + "END:VTODO\n"); }

inline std::string replaced(std::string text, const std::string& from, const std::string& to) {
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
}

/// The clock stands at 2026-04-26 08:30 UTC.
struct VdirReminderStoreTest : testing::Test {
    TemporaryFolder folder;
    FakeClock clock;
    std::vector<std::string> logged;
    std::string zone = "Europe/Berlin";

    std::string root() const { return folder / "reminders"; }
    std::string write(const std::string& name, const std::string& bytes) const {
        return folder.write("reminders/" + name, bytes);
    }
    std::string read(const std::string& name) const { return folder.read("reminders/" + name); }
    VdirReminderStore store() {
        return {{root(), zone, [this](const std::string& line) { logged.push_back(line); }}, clock};
    }
    std::vector<Reminder> all(const std::string& list = "home") {
        return store().reminders(list, std::chrono::seconds(10)).value();
    }
    std::vector<std::string> identifiers(const std::string& list = "home") {
        std::vector<std::string> result;
        for (const Reminder& reminder : all(list)) result.push_back(reminder.identifier);
        return result;
    }
    std::vector<std::string> names(const std::string& list = "home") const {
        std::vector<std::string> result;
        for (const auto& entry : std::filesystem::directory_iterator(root() + "/" + list))
            result.push_back(entry.path().filename());
        std::ranges::sort(result);
        return result;
    }
};

inline std::string dueText(const Reminder& reminder) {
    if (!reminder.due) return "none";
    const DueComponents& due = *reminder.due;
    std::string text = std::to_string(*due.year) + "-" + std::to_string(*due.month) + "-" + std::to_string(*due.day);
    if (due.hour) text += " " + std::to_string(*due.hour) + ":" + std::to_string(*due.minute);
    return text + (due.timeZone ? " " + *due.timeZone : "");
}

} // namespace vesk::test
