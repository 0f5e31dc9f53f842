#include "VeskPlatform/Linux/Messaging/TextingService.hpp"

#include <algorithm>

namespace vesk {

namespace {

std::string onOneLineOfOutput(std::string numbers) {
    std::ranges::replace_if(
        numbers, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    return numbers;
}

} // namespace

std::vector<std::string> latestNumbers(std::vector<TextingChat> chats, std::size_t limit) {
    std::ranges::stable_sort(chats, [](const TextingChat& a, const TextingChat& b) { return a.latest > b.latest; });
    std::vector<std::string> numbers;
    for (TextingChat& chat : chats) {
        if (numbers.size() == limit) break;
        std::string line = onOneLineOfOutput(std::move(chat.numbers));
        if (!line.empty() && std::ranges::find(numbers, line) == numbers.end()) numbers.push_back(std::move(line));
    }
    return numbers;
}

} // namespace vesk
