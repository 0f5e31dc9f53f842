#include "vesk/Table.hpp"

#include "vesk/PrintableText.hpp"

#include <algorithm>

namespace vesk {

namespace {

std::size_t width(const std::string& cell) {
    const auto begins = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; };
    return static_cast<std::size_t>(std::count_if(cell.begin(), cell.end(), begins));
}

} // namespace

std::string tableText(const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    for (const auto& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i) widths[i] = std::max(widths[i], width(printable(row[i])));
    }
    std::string text;
    for (const auto& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string cell = printable(row[i]);
            line += cell + std::string(widths[i] - width(cell) + 2, ' ');
        }
        line.resize(line.find_last_not_of(' ') + 1);
        text += line + "\n";
    }
    return text;
}

} // namespace vesk
