#include "VeskShellCore/ElementSearch.hpp"

#include <algorithm>
#include <deque>
#include <limits>
#include <unordered_set>
#include <utility>

namespace vesk {
namespace {

constexpr std::size_t mostVisited = 500;
constexpr std::int64_t goodEnough = 200;
constexpr std::int64_t leastScore = 40;
/// Elements that are asked for at the same time: enough to hide the round trips, few enough to waste little where the
/// walk ends early.
constexpr std::size_t mostAskedAtOnce = 64;

constexpr ScreenSize smallestField{.width = 20, .height = 16};

bool isFilled(const std::optional<std::string>& text) { return text && !text->empty(); }

std::int64_t focusPoints(bool focused, bool editable) {
    if (focused) return editable ? 200 : 120;
    return editable ? 80 : 0;
}

/// The walk's state. `take` meets the elements of the queue one after the other, in the order in which they were found.
class BestCandidate {
public:
    explicit BestCandidate(const AccessibilityElementHandle& start) : queue_{start}, met_{start.get()} {}

    bool isDone() const { return isFound_ || queue_.empty() || visited_ == mostVisited; }

    /// The next elements of the queue, as many as may be asked for at once; they stay in the queue.
    std::vector<AccessibilityElementHandle> next() const {
        const std::size_t count = std::min({queue_.size(), mostVisited - visited_, mostAskedAtOnce});
        return {queue_.begin(), queue_.begin() + static_cast<std::ptrdiff_t>(count)};
    }

    void take(const AccessibilityAnswer& answer) {
        AccessibilityElementHandle element = std::move(queue_.front());
        queue_.pop_front();
        const std::int64_t score = scoreInspectableCandidate(answer);
        if (score > bestScore_) {
            best_ = std::move(element);
            bestScore_ = score;
            isFound_ = score >= goodEnough;
        }
        for (AccessibilityElementHandle& child : childElements(answer))
            if (met_.insert(child.get()).second) {
                held_.push_back(child);
                queue_.push_back(std::move(child));
            }
        ++visited_;
    }

    std::optional<AccessibilityElementHandle> result() const {
        return bestScore_ < leastScore ? std::nullopt : std::optional(best_);
    }

private:
    std::deque<AccessibilityElementHandle> queue_;
    std::unordered_set<const AccessibilityElement*> met_;
    /// A handle that was let go could come again at the address of another element.
    std::vector<AccessibilityElementHandle> held_;
    AccessibilityElementHandle best_;
    std::int64_t bestScore_ = std::numeric_limits<std::int64_t>::min();
    std::size_t visited_ = 0;
    bool isFound_ = false;
};

} // namespace

AccessibilityQuery searchQuery() {
    return {{"AXRole", "AXSubrole", "AXEditable", "AXFocused", "AXPlaceholderValue", "AXIdentifier", "AXSize",
             "AXChildren", "AXVisibleChildren", "AXContents"},
            {"AXValue"}};
}

std::vector<AccessibilityElementHandle> childElements(const AccessibilityAnswer& answer) {
    std::vector<AccessibilityElementHandle> children;
    std::unordered_set<const AccessibilityElement*> met;
    for (const char* attribute : {"AXChildren", "AXVisibleChildren", "AXContents"})
        for (AccessibilityElementHandle& child : copyElementArrayAttribute(answer, attribute))
            if (met.insert(child.get()).second) children.push_back(std::move(child));
    return children;
}

std::int64_t scoreInspectableCandidate(const AccessibilityAnswer& answer) {
    const bool looksEditable =
        inferEditable(copyStringAttribute(answer, "AXRole"), copyStringAttribute(answer, "AXSubrole"));
    const bool editable = copyBoolAttribute(answer, "AXEditable").value_or(looksEditable);
    const bool focused = copyBoolAttribute(answer, "AXFocused").value_or(false);
    const auto size = copyCGSizeAttribute(answer, "AXSize");

    std::int64_t score = focusPoints(focused, editable);
    if (isAttributeSettable(answer, "AXValue")) score += 40;
    if (looksEditable) score += 25;
    if (isFilled(copyStringAttribute(answer, "AXPlaceholderValue"))) score += 10;
    if (isFilled(copyStringAttribute(answer, "AXIdentifier"))) score += 5;
    if (size && size->height > smallestField.height && size->width > smallestField.width) score += 10;
    return score;
}

Task<std::optional<AccessibilityElementHandle>> findBestInspectableDescendant(AccessibilityTree& tree,
                                                                              AccessibilityElementHandle start) {
    BestCandidate walk(start);
    while (!walk.isDone()) {
        auto elements = walk.next();
        AccessibilityQuery query = searchQuery();
        auto reading = tree.read(std::move(elements), std::move(query));
        const auto answers = co_await std::move(reading);
        for (const AccessibilityAnswer& answer : answers) {
            walk.take(answer);
            if (walk.isDone()) break;
        }
    }
    co_return walk.result();
}

} // namespace vesk
