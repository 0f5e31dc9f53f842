#include "vesk/ProgressBar.hpp"

#include <algorithm>
#include <cstdio>
#include <unistd.h>
#include <utility>

namespace vesk {
namespace {

constexpr int width = 40;

} // namespace

std::string progressLine(const std::string& label, int percent) {
    const auto filled = static_cast<std::size_t>(percent * width / 100);
    const std::string number = std::to_string(percent);
    return label + " [" + std::string(filled, '#') + std::string(width - filled, ' ') + "] "
           + std::string(3 - std::min<std::size_t>(3, number.size()), ' ') + number + " %";
}

ProgressBar::ProgressBar(std::string label, bool quiet)
    : label_(std::move(label)), visible_(!quiet && ::isatty(STDERR_FILENO) == 1) {}

ProgressBar::~ProgressBar() {
    if (shownPercent_ >= 0) (void)std::fputs("\r\x1B[K", stderr); // back to the start, and nothing behind it
}

void ProgressBar::show(double part) {
    const int percent = static_cast<int>(std::clamp(part, 0.0, 1.0) * 100);
    if (!visible_ || percent == shownPercent_) return;
    shownPercent_ = percent;
    (void)std::fprintf(stderr, "\r%s", progressLine(label_, percent).c_str());
}

} // namespace vesk
