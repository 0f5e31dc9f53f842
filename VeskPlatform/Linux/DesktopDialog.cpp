#include "VeskPlatform/Linux/DesktopDialog.hpp"

#include "VeskPlatform/Environment.hpp"
#include "VeskPlatform/Linux/ChildProcess.hpp"
#include "VeskPlatform/Linux/DesktopReach.hpp"
#include "VeskSupport/Text.hpp"

#include <algorithm>
#include <utility>

namespace vesk {

namespace {

using Labels = std::vector<std::string>;

std::string replaced(const std::string& text, char character, const std::string& by) {
    std::string result;
    for (const char c : text) {
        if (c == character)
            result += by;
        else
            result += c;
    }
    return result;
}

/// zenity prints the label of an extra button and ends with 1; closing the window or Escape ends with 1 and prints
/// nothing. It takes backslashes in its text for escapes.
DialogChoice chooseWithZenity(const std::string& program, const std::string& title, const std::string& text,
                              const Labels& labels) {
    std::vector<std::string> arguments{program,       "--question",       "--switch",
                                       "--no-markup", "--title=" + title, "--text=" + replaced(text, '\\', "\\\\")};
    for (const std::string& label : labels) arguments.push_back("--extra-button=" + label);
    const auto result = runProgram(arguments);
    if (!result) return {};
    const auto chosen = std::find(labels.begin(), labels.end(), trimmed(result->output));
    if (chosen != labels.end()) return {true, static_cast<std::size_t>(chosen - labels.begin())};
    // A display that turns the program away has no status of its own: only the toolkit's complaint tells.
    const bool turnedAway = result->errors.find("cannot open display") != std::string::npos;
    return {result->status == 1 && !turnedAway, std::nullopt};
}

/// Two labels: 0 is yes, 1 no, 2 closed. More: a menu that prints the tag of the chosen line.
DialogChoice chooseWithKdialog(const std::string& program, const std::string& title, const std::string& text,
                               const Labels& labels) {
    std::vector<std::string> arguments{program, "--title", title};
    const bool two = labels.size() == 2;
    if (two) {
        arguments.insert(arguments.end(), {"--yes-label", labels[0], "--no-label", labels[1], "--yesnocancel", text});
    } else {
        arguments.insert(arguments.end(), {"--menu", text});
        for (std::size_t i = 0; i < labels.size(); ++i)
            arguments.insert(arguments.end(), {std::to_string(i), labels[i]});
    }
    const auto result = runProgram(arguments);
    if (!result || result->status < 0 || result->status > 2) return {}; // a crash: Qt aborts without a display
    if (two)
        return {true, result->status == 2 ? std::nullopt : std::optional(static_cast<std::size_t>(result->status))};
    for (std::size_t i = 0; result->status == 0 && i < labels.size(); ++i)
        if (trimmed(result->output) == std::to_string(i)) return {true, i};
    return {true, std::nullopt};
}

} // namespace

DesktopDialog::DesktopDialog(Environment& environment, std::vector<std::string> folders)
    : environment_(environment), folders_(std::move(folders)) {}

DialogChoice DesktopDialog::choose(const std::string& title, const std::string& text, const Labels& labels) const {
    const auto zenity = installedProgram("zenity", folders_);
    const auto kdialog = zenity ? std::nullopt : installedProgram("kdialog", folders_);
    if ((!zenity && !kdialog) || !desktopCanBeReached(environment_)) return {};
    return zenity ? chooseWithZenity(*zenity, title, text, labels) : chooseWithKdialog(*kdialog, title, text, labels);
}

} // namespace vesk
