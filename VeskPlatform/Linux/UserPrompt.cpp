#include "VeskPlatform/Linux/UserPrompt.hpp"

namespace vesk {

std::optional<GivenAnswer> UserPrompt::ask(const std::string& title, const std::string& summary) {
    // The first button has the focus, and a key pressed by accident grants nothing.
    const DialogChoice choice = dialog_.choose(title, title + "\n\n" + summary, {"Deny", "Allow"});
    if (choice.shown) {
        if (!choice.chosen) return GivenAnswer{PromptAnswer::undecided, "dialog"};
        return GivenAnswer{*choice.chosen == 1 ? PromptAnswer::grant : PromptAnswer::deny, "dialog"};
    }
    const auto answer = askOnTerminal(title + "\n" + summary);
    return answer ? std::optional(GivenAnswer{*answer, "terminal"}) : std::nullopt;
}

} // namespace vesk
