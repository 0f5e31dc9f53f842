#pragma once

#include "VeskPlatform/Linux/ConsentPrompt.hpp"
#include "VeskPlatform/Linux/DesktopDialog.hpp"
#include "VeskPlatform/Linux/TerminalQuestion.hpp"

namespace vesk {

/// A dialog where the desktop can show one, else the controlling terminal, else nobody.
class UserPrompt : public ConsentPrompt {
public:
    explicit UserPrompt(DesktopDialog dialog) : dialog_(std::move(dialog)) {}
    std::optional<GivenAnswer> ask(const std::string& title, const std::string& summary) override;

private:
    DesktopDialog dialog_;
};

} // namespace vesk
