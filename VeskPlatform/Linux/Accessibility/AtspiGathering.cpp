#include "VeskPlatform/Linux/Accessibility/AtspiGathering.hpp"

#include "VeskPlatform/Linux/Accessibility/AtspiNames.hpp"
#include "VeskPlatform/Linux/Accessibility/AtspiReading.hpp"

#include <algorithm>
#include <string>
#include <utility>

namespace vesk {

namespace {

/// Of a collection: each item that is asked for is made by the application then, in a list of a million too.
constexpr std::int32_t mostItems = 500;
/// Characters of a text.
constexpr std::int32_t longestText = 65536;

BusCalls::Take takeText(std::optional<std::string>& text) {
    return [&text](sd_bus_message& answer) { text = readText(answer); };
}

bool mayHaveVeryManyChildren(const AtspiFacts& facts) {
    const auto ax = facts.axRole();
    return (ax && holdsItems(*ax)) || facts.has(ATSPI_STATE_MANAGES_DESCENDANTS);
}

/// Elements with the focus; the rest of the rule is empty.
void writeFocusRule(sd_bus_message& call) {
    constexpr std::int32_t all = ATSPI_Collection_MATCH_ALL, focused = 1 << ATSPI_STATE_FOCUSED;
    busRequired(sd_bus_message_append(&call, "(aiia{ss}iaiiasib)", 2, focused, 0, all, 0, all, 0, all, 0, all, 0));
}

} // namespace

std::vector<AtspiFacts> AtspiGathering::gather(const std::vector<AtspiElementHandle>& elements, AtspiFactSet wanted) {
    std::vector<AtspiFacts> all(elements.size());
    std::vector<Subject> subjects;
    for (std::size_t i = 0; i < elements.size(); ++i)
        if (elements[i]->reference.isElement()) subjects.push_back({elements[i], all[i]});

    for (const Subject& subject : subjects) askWhatStandsAlone(subject, wanted);
    calls_.finish(deadline_);
    for (const Subject& subject : subjects) {
        if (wanted.has(AtspiFact::identifier) && subject.facts.role && !subject.facts.identifier)
            subject.element->application->tellsIdentifiers = false;
        if (!subject.facts.has(ATSPI_STATE_DEFUNCT)) askByRole(subject, wanted);
    }
    calls_.finish(deadline_);
    if (wanted.has(AtspiFact::focus)) {
        for (const Subject& subject : subjects) askFocus(subject);
        calls_.finish(deadline_);
    }
    for (AtspiFacts& facts : all)
        if (facts.has(ATSPI_STATE_DEFUNCT)) facts = {};
    return all;
}

void AtspiGathering::askWhatStandsAlone(const Subject& subject, AtspiFactSet wanted) {
    const BusObject object = subject.object(atspi::accessible);
    AtspiFacts& facts = subject.facts;
    if (wanted.has(AtspiFact::role))
        calls_.add(object, "GetRole", [&facts](sd_bus_message& answer) {
            facts.role = static_cast<std::uint32_t>(readInteger(answer, 'u'));
        });
    if (wanted.has(AtspiFact::states))
        calls_.add(object, "GetState", [&facts](sd_bus_message& answer) { facts.states = readStates(answer); });
    if (wanted.has(AtspiFact::extents))
        calls_.add(
            subject.object(atspi::component), "GetExtents",
            [&facts](sd_bus_message& answer) { facts.extents = readExtents(answer); }, "u",
            std::uint32_t{ATSPI_COORD_TYPE_SCREEN});
    if (wanted.has(AtspiFact::roleName)) calls_.add(object, "GetLocalizedRoleName", takeText(facts.roleName));
    if (wanted.has(AtspiFact::name)) calls_.addProperty(object, "Name", "s", takeText(facts.name));
    if (wanted.has(AtspiFact::description)) calls_.addProperty(object, "Description", "s", takeText(facts.description));
    if (wanted.has(AtspiFact::identifier) && subject.element->application->tellsIdentifiers)
        calls_.addProperty(object, "AccessibleId", "s", takeText(facts.identifier));
}

void AtspiGathering::askByRole(const Subject& subject, AtspiFactSet wanted) {
    AtspiFacts& facts = subject.facts;
    const BusObject object = subject.object(atspi::accessible);
    const AxRole ax = facts.axRole().value_or(AxRole{});
    if (wanted.has(AtspiFact::attributes) && facts.hasText()) askAttributes(subject);
    if (wanted.has(AtspiFact::interfaces) && (facts.has(ATSPI_STATE_EDITABLE) || takesNumber(ax)))
        calls_.add(object, "GetInterfaces", [&facts](sd_bus_message& answer) { facts.interfaces = readNames(answer); });
    if (wanted.has(AtspiFact::text) && facts.hasText() && !facts.isSecret()) askText(subject);
    if (wanted.has(AtspiFact::selection) && facts.hasText() && !facts.isSecret()) askSelection(subject);
    if (wanted.has(AtspiFact::number) && holdsNumber(ax))
        calls_.addProperty(subject.object(atspi::value), "CurrentValue", "d",
                           [&facts](sd_bus_message& answer) { facts.number = readReal(answer); });
    if (wanted.has(AtspiFact::children)) askChildren(subject, wanted);
}

void AtspiGathering::askAttributes(const Subject& subject) {
    const BusObject object = subject.object(atspi::accessible);
    calls_.add(object, "GetAttributes", [this, object, &facts = subject.facts](sd_bus_message& answer) {
        facts.attributes = readAttributes(answer);
        if (facts.isNamedByPlaceholder() && !facts.name) calls_.addProperty(object, "Name", "s", takeText(facts.name));
    });
}

/// The length first, since not every toolkit takes an end past the text's.
void AtspiGathering::askText(const Subject& subject) {
    const BusObject object = subject.object(atspi::text);
    calls_.addProperty(object, "CharacterCount", "i", [this, object, &facts = subject.facts](sd_bus_message& answer) {
        const auto end = std::min(static_cast<std::int32_t>(readInteger(answer, 'i')), longestText);
        if (end <= 0)
            facts.text = "";
        else
            calls_.add(object, "GetText", takeText(facts.text), "ii", std::int32_t{0}, end);
    });
}

void AtspiGathering::askSelection(const Subject& subject) {
    const BusObject object = subject.object(atspi::text);
    auto take = [this, object, &facts = subject.facts](sd_bus_message& answer) {
        const auto start = static_cast<std::int32_t>(readInteger(answer, 'i'));
        const auto end = static_cast<std::int32_t>(readInteger(answer, 'i'));
        if (start < 0 || end <= start) return;
        const std::int32_t last = start + std::min(end - start, longestText);
        calls_.add(object, "GetText", takeText(facts.selection), "ii", start, last);
    };
    calls_.add(object, "GetSelection", std::move(take), "i", std::int32_t{0});
}

void AtspiGathering::askChildren(const Subject& subject, AtspiFactSet wanted) {
    const BusObject object = subject.object(atspi::accessible);
    auto takeAll = [this, subject, wanted](sd_bus_message& answer) {
        std::vector<AtspiReference> references = readReferences(answer);
        auto& children = subject.facts.children.emplace();
        for (AtspiReference& reference : references)
            children.push_back({.element = elements_.below(subject.element, std::move(reference))});
        for (std::size_t i = 0; i < children.size(); ++i) askAboutChild(subject, wanted, i);
    };
    if (!mayHaveVeryManyChildren(subject.facts)) {
        calls_.add(object, "GetChildren", std::move(takeAll));
        return;
    }
    auto takeCount = [this, subject, object, wanted, takeAll](sd_bus_message& answer) {
        const auto count = static_cast<std::int32_t>(readInteger(answer, 'i'));
        if (count <= mostItems)
            calls_.add(object, "GetChildren", takeAll);
        else
            askFirstChildren(subject, wanted, mostItems);
    };
    calls_.addProperty(object, "ChildCount", "i", std::move(takeCount));
}

void AtspiGathering::askFirstChildren(const Subject& subject, AtspiFactSet wanted, std::int32_t count) {
    subject.facts.children.emplace();
    for (std::int32_t i = 0; i < count; ++i) {
        // Answers come in the order of the questions.
        auto take = [this, subject, wanted](sd_bus_message& answer) {
            AtspiReference reference = readReference(answer);
            if (!reference.isElement()) return;
            auto& children = *subject.facts.children;
            children.push_back({.element = elements_.below(subject.element, std::move(reference))});
            askAboutChild(subject, wanted, children.size() - 1);
        };
        calls_.add(subject.object(atspi::accessible), "GetChildAtIndex", std::move(take), "i", i);
    }
}

void AtspiGathering::askAboutChild(const Subject& subject, AtspiFactSet wanted, std::size_t index) {
    AtspiFacts& facts = subject.facts;
    const AxRole ax = facts.axRole().value_or(AxRole{});
    const AtspiReference& child = (*facts.children)[index].element->reference;
    const BusObject object{child.service, child.path, atspi::accessible};
    if (wanted.has(AtspiFact::childStates) && (subject.element->isApplication() || holdsItems(ax)))
        calls_.add(object, "GetState",
                   [&facts, index](sd_bus_message& answer) { (*facts.children)[index].states = readStates(answer); });
    if (wanted.has(AtspiFact::childRoles) && facts.role == ATSPI_ROLE_SCROLL_PANE)
        calls_.add(object, "GetRole", [&facts, index](sd_bus_message& answer) {
            (*facts.children)[index].role = static_cast<std::uint32_t>(readInteger(answer, 'u'));
        });
}

/// In the active window, since windows in the background have a focus of their own; in all where none is active, which
/// is so while one is being opened. The first of the application's order counts.
void AtspiGathering::askFocus(const Subject& subject) {
    if (!subject.element->isApplication() || !subject.facts.children) return;
    std::vector<AtspiElementHandle> windows;
    if (AtspiElementHandle active = subject.facts.activeChild())
        windows.push_back(std::move(active));
    else
        for (const AtspiChild& child : *subject.facts.children) windows.push_back(child.element);

    for (const AtspiElementHandle& window : windows) {
        const BusObject object{window->reference.service, window->reference.path, atspi::collection};
        BusMessage call = bus_.newCall(object, "GetMatches");
        writeFocusRule(*call);
        constexpr std::uint32_t inOrder = ATSPI_Collection_SORT_ORDER_CANONICAL;
        busRequired(sd_bus_message_append(call.get(), "uib", inOrder, 1, 1));
        calls_.add(std::move(call), [this, window, &facts = subject.facts](sd_bus_message& answer) {
            std::vector<AtspiReference> found = readReferences(answer);
            if (!facts.focus && !found.empty()) facts.focus = elements_.below(window, std::move(found.front()));
        });
    }
}

} // namespace vesk
