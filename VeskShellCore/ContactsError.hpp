#pragma once

#include "VeskSupport/ErrorRecord.hpp"

namespace vesk::VeskContactsOperations {

/// A refusal of the contact operations, domain "VeskContactsOperations".
class ContactsError : public ErrorRecord {
public:
    enum class Code { argumentInvalid = 400, accessRefused = 403, accessUnknown = 500 };

    ContactsError(Code code, std::string description)
        : ErrorRecord("VeskContactsOperations", static_cast<int>(code), std::move(description)) {}
};

} // namespace vesk::VeskContactsOperations
