#pragma once

#include <string>

namespace vesk {

/// How far long work is, on one line of standard error, where that is a terminal. The line goes with the object.
class ProgressBar {
public:
    ProgressBar(std::string label, bool quiet);
    ~ProgressBar();
    ProgressBar(const ProgressBar&) = delete;
    ProgressBar& operator=(const ProgressBar&) = delete;

    /// From 0 to 1. Draws only what is new to see.
    void show(double part);

private:
    std::string label_;
    bool visible_;
    int shownPercent_ = -1;
};

/// The line for a percentage: "Composing [#####               ]  25 %".
std::string progressLine(const std::string& label, int percent);

} // namespace vesk
