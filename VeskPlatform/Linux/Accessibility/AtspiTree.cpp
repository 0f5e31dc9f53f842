#include "VeskPlatform/Linux/Accessibility/AtspiTree.hpp"

#include "VeskPlatform/Linux/Accessibility/AtspiAttributes.hpp"
#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"
#include "VeskPlatform/Linux/Accessibility/AtspiReading.hpp"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <set>
#include <utility>

namespace vesk {

namespace {

using std::chrono::steady_clock;

/// The handles that this adapter gave out.
AtspiElementHandle ownHandle(const AccessibilityElementHandle& element) {
    return std::static_pointer_cast<const AtspiElement>(element);
}

/// The whole text as a number.
std::optional<double> numberOf(const std::string& text) {
    double number = 0;
    const char* end = text.data() + text.size();
    const auto [rest, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && rest == end && std::isfinite(number) ? std::optional(number) : std::nullopt;
}

/// Some toolkits answer nothing where they did what was asked.
bool readAcceptance(sd_bus_message& answer) {
    return sd_bus_message_has_signature(&answer, "b") == 0 || readInteger(answer, 'b') != 0;
}

std::set<AtspiApplication*> applicationsOf(const std::vector<AtspiElementHandle>& elements) {
    std::set<AtspiApplication*> applications;
    for (const AtspiElementHandle& element : elements) applications.insert(element->application.get());
    return applications;
}

bool hasPatience(const AtspiElementHandle& element) { return element->application->patience.count() > 0; }

/// Lets what happens in its life count against the patience with the applications of some elements.
class PatienceWatch {
public:
    explicit PatienceWatch(const std::vector<AtspiElementHandle>& elements) : applications_(applicationsOf(elements)) {}
    ~PatienceWatch() {
        for (AtspiApplication* application : applications_) application->patience -= steady_clock::now() - start_;
    }
    PatienceWatch(const PatienceWatch&) = delete;
    PatienceWatch& operator=(const PatienceWatch&) = delete;

    steady_clock::time_point deadline() const {
        steady_clock::duration longest{};
        for (const AtspiApplication* application : applications_) longest = std::max(longest, application->patience);
        return start_ + longest;
    }

private:
    steady_clock::time_point start_ = steady_clock::now();
    std::set<AtspiApplication*> applications_;
};

/// The applications on the bus that are connections of this process.
std::vector<AtspiReference> askForApplications(BusCalls& calls, std::int32_t processIdentifier,
                                               steady_clock::time_point deadline) {
    std::vector<AtspiReference> applications;
    auto askForProcess = [&calls, &applications, processIdentifier](const AtspiReference& reference) {
        auto take = [&applications, processIdentifier, reference](sd_bus_message& answer) {
            if (readInteger(answer, 'u') == processIdentifier) applications.push_back(reference);
        };
        calls.add({"org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus"},
                  "GetConnectionUnixProcessID", std::move(take), "s", reference.service.c_str());
    };
    auto takeAll = [&askForProcess](sd_bus_message& answer) {
        for (const AtspiReference& reference : readReferences(answer)) askForProcess(reference);
    };
    calls.add({atspi::registryService, atspi::rootPath, atspi::accessible}, "GetChildren", std::move(takeAll));
    calls.finish(deadline);
    return applications;
}

/// Of several, since a browser, for one, may come onto the bus more than once; the first where none has any.
AtspiReference applicationWithWindows(BusCalls& calls, const std::vector<AtspiReference>& applications,
                                      steady_clock::time_point deadline) {
    if (applications.empty()) return {};
    if (applications.size() == 1) return applications.front();
    std::vector<std::int64_t> counts(applications.size());
    for (std::size_t i = 0; i < applications.size(); ++i)
        calls.addProperty({applications[i].service, applications[i].path, atspi::accessible}, "ChildCount", "i",
                          [&count = counts[i]](sd_bus_message& answer) { count = readInteger(answer, 'i'); });
    calls.finish(deadline);
    const auto found = std::ranges::find_if(counts, [](std::int64_t count) { return count > 0; });
    return found == counts.end() ? applications.front()
                                 : applications[static_cast<std::size_t>(found - counts.begin())];
}

} // namespace

AtspiTree::AtspiTree(const std::string& address, std::function<void(const std::string& message)> log,
                     const AtspiPatience& patience)
    : log_(std::move(log)), patience_(patience), bus_(address, patience.bus) {}

Task<AccessibilityElementHandle> AtspiTree::applicationElement(std::int32_t processIdentifier) {
    const auto start = steady_clock::now();
    BusCalls calls(bus_);
    const std::vector<AtspiReference> applications =
        askForApplications(calls, processIdentifier, start + patience_.bus);
    AtspiReference reference = applicationWithWindows(calls, applications, start + patience_.bus);
    // A process without elements still has a root, which has nothing.
    if (!reference.isElement()) reference = {"", "process " + std::to_string(processIdentifier)};
    co_return elements_.application(std::move(reference), patience_.application);
}

std::vector<AtspiFacts> AtspiTree::gather(const std::vector<AtspiElementHandle>& elements, AtspiFactSet wanted) {
    std::vector<AtspiFacts> facts;
    {
        const PatienceWatch watch(elements);
        facts = AtspiGathering(bus_, elements_, watch.deadline()).gather(elements, wanted);
    }
    noteSilence(elements);
    return facts;
}

Task<std::vector<AccessibilityAnswer>> AtspiTree::read(std::vector<AccessibilityElementHandle> elements,
                                                       AccessibilityQuery query) {
    std::vector<AtspiElementHandle> asked;
    for (const AccessibilityElementHandle& element : elements)
        if (AtspiElementHandle own = ownHandle(element); hasPatience(own)) asked.push_back(std::move(own));
    const std::vector<AtspiFacts> facts = gather(asked, factsFor(query));

    std::vector<AccessibilityAnswer> answers(elements.size());
    for (std::size_t i = 0, next = 0; i < elements.size(); ++i)
        if (next < asked.size() && asked[next] == elements[i]) {
            answers[i] = answerTo(query, *asked[next], facts[next]);
            ++next;
        }
    co_return answers;
}

Task<bool> AtspiTree::setValue(AccessibilityElementHandle element, std::string attribute, std::string text) {
    const std::vector<AtspiElementHandle> asked{ownHandle(element)};
    if (attribute != "AXValue" || !hasPatience(asked.front())) co_return false;
    const std::vector<AtspiFacts> gathered = gather(asked, {AtspiFact::role, AtspiFact::states, AtspiFact::interfaces});
    const AtspiFacts& facts = gathered.front();
    const auto number = takesNumber(facts) ? numberOf(text) : std::nullopt;
    if (!number && !takesText(facts)) co_return false;

    const AtspiReference& reference = asked.front()->reference;
    BusCalls calls(bus_);
    bool accepted = false;
    if (number)
        calls.add(
            {reference.service, reference.path, "org.freedesktop.DBus.Properties"}, "Set",
            [&accepted](sd_bus_message&) { accepted = true; }, "ssv", atspi::value, "CurrentValue", "d", *number);
    else
        calls.add(
            {reference.service, reference.path, atspi::editableText}, "SetTextContents",
            [&accepted](sd_bus_message& answer) { accepted = readAcceptance(answer); }, "s", text.c_str());
    {
        const PatienceWatch watch(asked);
        calls.finish(watch.deadline());
    }
    noteSilence(asked);
    co_return accepted;
}

/// Once for each application, since it is not asked again.
void AtspiTree::noteSilence(const std::vector<AtspiElementHandle>& elements) const {
    if (log_ && !std::ranges::all_of(elements, hasPatience)) log_("accessibility application unanswered");
}

} // namespace vesk
