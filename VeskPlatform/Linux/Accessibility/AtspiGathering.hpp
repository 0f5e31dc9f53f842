#pragma once

#include "VeskPlatform/Linux/Accessibility/AtspiFacts.hpp"
#include "VeskPlatform/Linux/Bus/BusCalls.hpp"

#include <chrono>
#include <cstddef>
#include <vector>

namespace vesk {

/// Finds out about many elements at once: what does not depend on other answers is asked for at the same time, so that
/// a window of hundreds of elements costs a few round trips. (libatspi waits for the answer to each question: measured
/// over the 500 elements of a Qt window, 260 ms against 80.)
class AtspiGathering {
public:
    /// Asks until the deadline; what is not answered by then is not there.
    AtspiGathering(BusConnection& bus, AtspiElements& elements, std::chrono::steady_clock::time_point deadline)
        : calls_(bus), bus_(bus), elements_(elements), deadline_(deadline) {}

    /// One for each element, in their order. An element that is not on the bus, or says that it is defunct, has none.
    std::vector<AtspiFacts> gather(const std::vector<AtspiElementHandle>& elements, AtspiFactSet wanted);

private:
    struct Subject {
        const AtspiElementHandle& element;
        AtspiFacts& facts;

        BusObject object(const char* interface) const {
            return {element->reference.service, element->reference.path, interface};
        }
    };

    void askWhatStandsAlone(const Subject& subject, AtspiFactSet wanted);
    void askByRole(const Subject& subject, AtspiFactSet wanted);
    void askAttributes(const Subject& subject);
    void askText(const Subject& subject);
    void askSelection(const Subject& subject);
    void askChildren(const Subject& subject, AtspiFactSet wanted);
    void askFirstChildren(const Subject& subject, AtspiFactSet wanted, std::int32_t count);
    void askAboutChild(const Subject& subject, AtspiFactSet wanted, std::size_t index);
    void askFocus(const Subject& subject);

    BusCalls calls_;
    BusConnection& bus_;
    AtspiElements& elements_;
    std::chrono::steady_clock::time_point deadline_;
};

} // namespace vesk
