#include "VeskPlatform/Linux/Accessibility/AtspiReading.hpp"

#include <utility>

namespace vesk {

AtspiReference readReference(sd_bus_message& answer) {
    AtspiReference reference;
    busRequired(sd_bus_message_enter_container(&answer, 'r', "so"));
    reference.service = readText(answer);
    reference.path = readText(answer, 'o');
    busRequired(sd_bus_message_exit_container(&answer));
    return reference;
}

std::vector<AtspiReference> readReferences(sd_bus_message& answer) {
    std::vector<AtspiReference> references;
    busRequired(sd_bus_message_enter_container(&answer, 'a', "(so)"));
    while (busRequired(sd_bus_message_at_end(&answer, 0)) == 0) references.push_back(readReference(answer));
    std::erase_if(references, [](const AtspiReference& reference) { return !reference.isElement(); });
    return references;
}

/// Two words of 32 bits, the lower one first.
AtspiStates readStates(sd_bus_message& answer) {
    AtspiStates states;
    unsigned shift = 0;
    readItems(answer, 'a', "u", [&] {
        const auto word = static_cast<std::uint64_t>(readInteger(answer, 'u'));
        if (shift < 64) states.bits |= word << shift;
        shift += 32;
    });
    return states;
}

AtspiExtents readExtents(sd_bus_message& answer) {
    AtspiExtents extents;
    busRequired(sd_bus_message_enter_container(&answer, 'r', "iiii"));
    for (std::int32_t* part : {&extents.x, &extents.y, &extents.width, &extents.height})
        *part = static_cast<std::int32_t>(readInteger(answer, 'i'));
    return extents;
}

std::map<std::string, std::string> readAttributes(sd_bus_message& answer) {
    std::map<std::string, std::string> attributes;
    readItems(answer, 'a', "{ss}", [&] {
        readItems(answer, 'e', "ss", [&] {
            std::string name = readText(answer);
            attributes[std::move(name)] = readText(answer);
        });
    });
    return attributes;
}

std::set<std::string> readNames(sd_bus_message& answer) {
    std::set<std::string> names;
    readItems(answer, 'a', "s", [&] { names.insert(readText(answer)); });
    return names;
}

double readReal(sd_bus_message& answer) {
    double number = 0;
    busRequired(sd_bus_message_read_basic(&answer, 'd', &number));
    return number;
}

} // namespace vesk
