#pragma once

#include <optional>
#include <string>

namespace vesk {

/// What the user said: yes, no, or nothing at all (closed the window, ended the input, interrupted).
enum class PromptAnswer { grant, deny, undecided };

/// An answer and where it was given: "dialog" or "terminal".
struct GivenAnswer {
    PromptAnswer answer = PromptAnswer::undecided;
    std::string givenIn;

    bool operator==(const GivenAnswer&) const = default;
};

/// Asks the user one question and waits for the answer, however long it takes. Called off the main executor, one call
/// at a time.
class ConsentPrompt {
public:
    virtual ~ConsentPrompt() = default;
    /// None where there is nobody to ask.
    virtual std::optional<GivenAnswer> ask(const std::string& title, const std::string& summary) = 0;
};

} // namespace vesk
