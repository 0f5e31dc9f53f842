#include "vesk/SignOutCommand.hpp"

#include "VeskShellCore/VeskAuthSessionStore.hpp"
#include "vesk/CompanionError.hpp"

namespace vesk {
namespace {

void keep(VeskAuthSessionStore& store, const VeskAuthSignOutTransaction& transaction) {
    store.persistSignOutTransaction(transaction);
    if (store.signOutTransaction() != transaction)
        throw CompanionError(CompanionError::Kind::notKept, "The sign-out cannot be kept in the state folder.");
}

void advance(VeskAuthSessionStore& store, VeskAuthSignOutPhase phase) {
    auto transaction = store.signOutTransaction();
    if (!transaction) throw CompanionError(CompanionError::Kind::noSignOut, "No sign-out has begun.");
    transaction->phase = phase;
    keep(store, *transaction);
}

void finish(VeskAuthSessionStore& store) {
    store.clearSignOutTransaction();
    if (store.signOutTransaction())
        throw CompanionError(CompanionError::Kind::notKept, "The sign-out cannot be removed from the state folder.");
}

void change(const SignOutCommand& command, VeskAuthSessionStore& store) {
    switch (command.verb) {
    case SignOutVerb::begin: return keep(store, {{command.installed, command.running}, VeskAuthSignOutPhase::stopping});
    case SignOutVerb::advance: return advance(store, command.phase);
    case SignOutVerb::finish: return finish(store);
    case SignOutVerb::show: return;
    }
}

} // namespace

std::string runSignOut(const SignOutCommand& command, Platform& platform) {
    VeskAuthSessionStore store(platform);
    change(command, store);
    const auto transaction = store.signOutTransaction();
    return writeJson(transaction ? toJson(*transaction) : JsonValue{JsonValue::Object{}}) + "\n";
}

} // namespace vesk
