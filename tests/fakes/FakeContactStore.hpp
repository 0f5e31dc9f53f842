#pragma once

#include "VeskPlatform/ContactStore.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <optional>

namespace vesk::test {

/// Contacts in memory. Each call but for `mailingText` is recorded by its name, in order.
class FakeContactStore : public ContactStore {
public:
    std::vector<ContactCard> stored;
    /// Thrown by the next calls of their kind, if set.
    std::optional<ErrorRecord> readFailure, saveFailure;
    std::vector<std::string> calls;

    void forEachContact(const std::function<void(const ContactCard&)>& visit) override {
        calls.emplace_back("forEachContact");
        if (readFailure) throw *readFailure;
        for (const ContactCard& contact : stored) visit(contact);
    }
    ContactCard contact(const std::string& identifier) override {
        calls.push_back("contact " + identifier);
        return *find(identifier);
    }
    ContactCard add(const ContactCard& card) override {
        calls.emplace_back("add");
        if (saveFailure) throw *saveFailure;
        ContactCard saved = card;
        saved.identifier = "saved-" + std::to_string(stored.size() + 1);
        return stored.emplace_back(std::move(saved));
    }
    ContactCard update(const ContactCard& card) override {
        calls.push_back("update " + card.identifier);
        if (saveFailure) throw *saveFailure;
        return *find(card.identifier) = card;
    }
    std::string mailingText(const PostalAddress& address) const override {
        std::string text;
        for (const std::string& line : {address.street, address.city, address.country})
            if (!line.empty()) text += (text.empty() ? "" : "\n") + line;
        return text;
    }

private:
    std::vector<ContactCard>::iterator find(const std::string& identifier) {
        const auto found = std::ranges::find(stored, identifier, &ContactCard::identifier);
        if (found == stored.end()) throw ErrorRecord("FakeContactStore", 404, "No contact " + identifier);
        return found;
    }
};

} // namespace vesk::test
