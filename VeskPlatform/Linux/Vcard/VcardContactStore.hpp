#pragma once

#include "VeskPlatform/Clock.hpp"
#include "VeskPlatform/ContactStore.hpp"
#include "VeskPlatform/Linux/Vdir/Survey.hpp"

#include <functional>
#include <memory>
#include <string>

namespace vesk {

struct VcardContactStoreOptions {
    /// The root of the address books; a missing one is an empty store, and is made with the first contact.
    std::string root;
    /// Where the index is kept; empty for no index.
    std::string cacheFolder;
    /// The user's country, two letters (ISO 3166-1): addresses that name none are written by its custom.
    std::string country;
    /// Hears of files that cannot be read, by the kind of error; never of names or content.
    std::function<void(const std::string&)> log;
};

/// Address books as folders of vCard files (versions 2.1, 3.0 and 4.0), as khard and vdirsyncer keep them. The
/// identifier of a contact is its UID; without one, or where an earlier card has the same, it is the path of its file
/// below the root, with "#2" and so on for further cards of one file. Contacts come by book, file name and place.
///
/// A change is made to the card as it then stands and touches only what the caller changed; other programs' changes
/// meanwhile are kept.
class VcardContactStore : public ContactStore {
public:
    VcardContactStore(VcardContactStoreOptions options, Clock& clock);
    ~VcardContactStore() override;

    void forEachContact(const std::function<void(const ContactCard&)>& visit) override;
    ContactCard contact(const std::string& identifier) override;
    ContactCard add(const ContactCard& card) override;
    ContactCard update(const ContactCard& card) override;
    std::string mailingText(const PostalAddress& address) const override;

    /// Throws PosixError where the root cannot be listed.
    static VdirSurvey survey(const std::string& root);

private:
    struct State;
    std::unique_ptr<State> state_;
};

} // namespace vesk
