#pragma once

#include "VeskSupport/ErrorRecord.hpp"

namespace vesk::VeskTodoOperations {

/// A refusal of the to-do operations, domain "VeskTodoOperations".
class TodoError : public ErrorRecord {
public:
    enum class Code { argumentInvalid = 400, accessRefused = 403, notFound = 404, failed = 500 };

    TodoError(Code code, std::string description)
        : ErrorRecord("VeskTodoOperations", static_cast<int>(code), std::move(description)) {}
};

} // namespace vesk::VeskTodoOperations
