#include "VeskPlatform/Linux/Vcard/CardScanner.hpp"

#include "VeskPlatform/Linux/Vcard/PhysicalLines.hpp"

namespace vesk::vcard {
namespace {

class Scanner {
public:
    explicit Scanner(std::string_view bytes) : lines_(bytes, bytes.starts_with("\xEF\xBB\xBF") ? 3 : 0) {}

    ScannedCards run() {
        while (!lines_.atEnd()) readLine(lines_.take());
        if (depth_ > 0 || result_.cards.empty()) result_.damaged = true;
        return std::move(result_);
    }

private:
    void readLine(const PhysicalLine& line) {
        if (line.text.empty()) return;
        const CardMarker marker = cardMarker(line.text);
        if (marker == CardMarker::begin) beginCard(line.begin);
        if (marker == CardMarker::end) endCard(line.next);
        if (marker == CardMarker::agentBegin && depth_ > 0) ++depth_;
        behindAgent_ = marker == CardMarker::agent;
    }

    void beginCard(std::size_t begin) {
        if (depth_ > 0 && behindAgent_) {
            ++depth_;
            return;
        }
        // A card that begins within another one without its AGENT: the other one was cut off.
        if (depth_ > 0) result_.damaged = true;
        depth_ = 1;
        begin_ = begin;
    }

    void endCard(std::size_t end) {
        if (depth_ == 0)
            result_.damaged = true;
        else if (--depth_ == 0)
            result_.cards.push_back({begin_, end});
    }

    PhysicalLines lines_;
    std::size_t depth_ = 0, begin_ = 0;
    bool behindAgent_ = false;
    ScannedCards result_;
};

} // namespace

ScannedCards scanCards(std::string_view bytes) { return Scanner(bytes).run(); }

} // namespace vesk::vcard
