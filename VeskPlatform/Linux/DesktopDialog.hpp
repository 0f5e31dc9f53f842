#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace vesk {

class Environment;

struct DialogChoice {
    /// Whether there was a dialog at all.
    bool shown = false;
    /// The place of the chosen label; none where the user closed the dialog.
    std::optional<std::size_t> chosen;
};

/// Dialogs on the user's desktop, through zenity, or through kdialog where only that is installed.
class DesktopDialog {
public:
    /// The dialog programs are looked for in `folders`.
    explicit DesktopDialog(Environment& environment, std::vector<std::string> folders = {"/usr/bin", "/bin"});

    /// Shows `text` and a way to choose each of `labels` (at least two), and waits for the user. The first has the
    /// focus. Plain text: nothing in it is markup.
    DialogChoice choose(const std::string& title, const std::string& text,
                        const std::vector<std::string>& labels) const;

private:
    Environment& environment_;
    std::vector<std::string> folders_;
};

} // namespace vesk
