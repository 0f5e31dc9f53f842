#include "vesk/Linux/ConsentCommands.hpp"

#include "VeskPlatform/Linux/SqliteConsent.hpp"
#include "VeskPlatform/Linux/TerminalQuestion.hpp"
#include "VeskSupport/ErrorRecord.hpp"
#include "VeskSupport/Iso8601.hpp"
#include "VeskSupport/Text.hpp"
#include "vesk/Table.hpp"

#include <algorithm>

namespace vesk {

namespace {

ErrorRecord failure(const std::string& description) { return {"VeskCompanion", 1, description}; }

CapabilityKind kindNamed(const ConsentCommand& command, const std::string& name) {
    const auto kind = fromRawValue<CapabilityKind>(name);
    if (!kind) throw UsageError(command.usage, "Unknown capability: " + onOneLine(repairedUtf8(name)));
    return *kind;
}

/// The capabilities that the command is about. Every name is looked up before any is turned down.
std::vector<CapabilityKind> namedKinds(const ConsentCommand& command) {
    if (command.all || command.verb == ConsentVerb::list) return capabilitiesWithConsent();
    std::vector<CapabilityKind> kinds;
    for (const std::string& name : command.names) {
        const CapabilityKind kind = kindNamed(command, name);
        if (std::find(kinds.begin(), kinds.end(), kind) == kinds.end()) kinds.push_back(kind);
    }
    for (const CapabilityKind kind : kinds)
        if (!hasConsent(kind))
            throw failure(std::string(rawValue(kind)) + " has no consent: it is what it is found to be.");
    return kinds;
}

void confirmGrant(const std::vector<CapabilityKind>& kinds) {
    std::string question = "Allow the assistant to use:";
    for (const CapabilityKind kind : kinds)
        question += "\n  " + std::string(title(kind)) + ": " + std::string(shortSummary(kind));
    const auto answer = askOnTerminal(question + "\nAllow?");
    if (!answer) throw failure("There is no terminal to ask on. Nothing was changed; --yes grants without a question.");
    if (*answer != PromptAnswer::grant) throw failure("Nothing was changed.");
}

void change(const ConsentCommand& command, const std::vector<CapabilityKind>& kinds, ConsentDatabase& database,
            Clock& clock) {
    std::vector<std::string> rows;
    for (const CapabilityKind kind : kinds) rows.push_back(consentRow(std::string(rawValue(kind))));
    if (command.verb == ConsentVerb::reset) return database.reset(rows);
    if (command.verb == ConsentVerb::grant && !command.yes) confirmGrant(kinds);
    const auto state = command.verb == ConsentVerb::grant ? ConsentState::granted : ConsentState::denied;
    database.decide(rows, {state, "vesk consent", formatUtcMilliseconds(clock.now())});
}

CapabilityAuthorizationState authorization(ConsentState state) {
    switch (state) {
    case ConsentState::notDetermined: return CapabilityAuthorizationState::notDetermined;
    case ConsentState::restricted: return CapabilityAuthorizationState::restricted;
    case ConsentState::denied: return CapabilityAuthorizationState::denied;
    case ConsentState::granted: return CapabilityAuthorizationState::granted;
    }
    return CapabilityAuthorizationState::unavailable;
}

std::string entriesTable(const std::vector<ConsentEntry>& entries) {
    std::vector<std::vector<std::string>> rows{{"CAPABILITY", "TITLE", "STATE", "DECIDED AT", "DECIDED BY"}};
    for (const ConsentEntry& e : entries)
        rows.push_back({e.id, e.title, stateText(e.state), e.decidedAt.value_or("-"), e.decidedBy.value_or("-")});
    return tableText(rows);
}

} // namespace

bool hasConsent(CapabilityKind kind) {
    return kind != CapabilityKind::fullDiskAccess && kind != CapabilityKind::iCloud;
}

std::vector<CapabilityKind> capabilitiesWithConsent() {
    std::vector<CapabilityKind> kinds;
    std::copy_if(allCapabilityKinds.begin(), allCapabilityKinds.end(), std::back_inserter(kinds), hasConsent);
    return kinds;
}

std::vector<ConsentEntry> consentEntries(const std::vector<CapabilityKind>& kinds,
                                         const std::map<std::string, ConsentDecision>& decisions) {
    std::vector<ConsentEntry> entries;
    for (const CapabilityKind kind : kinds) {
        ConsentEntry entry{.id = std::string(rawValue(kind)),
                           .title = std::string(title(kind)),
                           .state = CapabilityAuthorizationState::notDetermined,
                           .decidedAt = std::nullopt,
                           .decidedBy = std::nullopt};
        if (const auto found = decisions.find(consentRow(entry.id)); found != decisions.end()) {
            entry.state = authorization(found->second.state);
            entry.decidedAt = found->second.decidedAt;
            entry.decidedBy = found->second.decidedBy;
        }
        entries.push_back(std::move(entry));
    }
    return entries;
}

std::string stateText(CapabilityAuthorizationState state) {
    std::string text(rawValue(state));
    std::replace(text.begin(), text.end(), '_', ' ');
    return text;
}

std::string runConsent(const ConsentCommand& command, ConsentDatabase& database, Clock& clock) {
    const std::vector<CapabilityKind> kinds = namedKinds(command);
    if (command.verb != ConsentVerb::list) change(command, kinds, database, clock);
    const ConsentList list{consentEntries(kinds, database.decisions())};
    return command.json ? writeJson(toJson(list)) + "\n" : entriesTable(list.capabilities);
}

} // namespace vesk
