#include "vesk/Linux/ConsentPage.hpp"

#include "VeskPlatform/Linux/SqliteConsent.hpp"
#include "VeskShellCore/CapabilityModels.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/Text.hpp"
#include "vesk/Linux/ConsentCommands.hpp"

#include <algorithm>

namespace vesk {

namespace {

constexpr const char* pageTitle = "Vesk: privacy";

/// What one decision covers: a row of the database and the capabilities that it decides about.
struct PageItem {
    std::string row;
    std::vector<CapabilityKind> kinds;

    std::string title() const {
        std::vector<std::string> titles;
        for (const CapabilityKind kind : kinds) titles.emplace_back(vesk::title(kind));
        return joined(titles, ", ");
    }
};

std::vector<PageItem> itemsOfPane(const ConsentPageCommand& command) {
    std::vector<PageItem> items;
    bool known = false;
    for (const CapabilityKind kind : allCapabilityKinds) {
        if (systemSettingsURL(kind) != command.url) continue;
        known = true;
        if (!hasConsent(kind)) continue;
        const std::string row = consentRow(std::string(rawValue(kind)));
        auto item = std::find_if(items.begin(), items.end(), [&](const PageItem& i) { return i.row == row; });
        if (item == items.end()) item = items.insert(items.end(), PageItem{row, {}});
        item->kinds.push_back(kind);
    }
    if (!known) throw UsageError(command.usage, "Unknown settings address: " + onOneLine(repairedUtf8(command.url)));
    return items;
}

std::string currentState(const PageItem& item, const ConsentDatabase& database) {
    return stateText(consentEntries(item.kinds, database.decisions()).front().state);
}

/// The item that the user picks; the only one needs no picking. None where the page was closed.
const PageItem* pickedItem(const std::vector<PageItem>& items, const DesktopDialog& dialog,
                           const ConsentDatabase& database) {
    if (items.size() == 1) return &items.front();
    std::string text = "What the assistant may do:\n";
    std::vector<std::string> labels{"Close"};
    for (const PageItem& item : items) {
        text += "\n" + item.title() + ": " + currentState(item, database);
        labels.push_back(item.title());
    }
    const DialogChoice choice = dialog.choose(pageTitle, text, labels);
    return choice.chosen.value_or(0) == 0 ? nullptr : &items[*choice.chosen - 1];
}

/// Lets the user decide about one item; false where the dialog was closed.
bool decide(const PageItem& item, const DesktopDialog& dialog, ConsentDatabase& database, Clock& clock) {
    std::string text = item.title() + ": " + currentState(item, database) + "\n";
    for (const CapabilityKind kind : item.kinds) text += "\n" + std::string(shortSummary(kind));
    enum Button : std::size_t { close, allow, deny, reset };
    const DialogChoice choice = dialog.choose(pageTitle, text, {"Close", "Allow", "Deny", "Reset"});
    const std::size_t button = choice.chosen.value_or(close);
    if (button == close) return false;
    if (button == reset) {
        database.reset({item.row});
    } else {
        const auto state = button == allow ? ConsentState::granted : ConsentState::denied;
        database.decide({item.row}, {state, "dialog", formatUtcMilliseconds(clock.now())});
    }
    return true;
}

} // namespace

void runConsentPage(const ConsentPageCommand& command, const DesktopDialog& dialog, ConsentDatabase& database,
                    Clock& clock) {
    const std::vector<PageItem> items = itemsOfPane(command);
    if (items.empty()) return;
    for (;;) {
        const PageItem* item = pickedItem(items, dialog, database);
        if (item == nullptr) return;
        // Closing one of several goes back to the list; closing the only one closes the page.
        if (!decide(*item, dialog, database, clock) && items.size() == 1) return;
    }
}

} // namespace vesk
