#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"
#include "VeskPlatform/Linux/Accessibility/AtspiGathering.hpp"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace vesk {

/// How long AT-SPI is waited for. The applications themselves have no say in it.
struct AtspiPatience {
    /// Coming onto the bus, which may start it; asking which applications there are.
    std::chrono::milliseconds bus{2'000};
    /// One application, in all that is asked of it from `applicationElement` on. One that does not answer has no values
    /// from then on.
    std::chrono::milliseconds application{2'000};
};

/// The elements of AT-SPI version 2, straight over D-Bus with many questions on their way at the same time. The calling
/// thread waits for the answers, never longer than the patience lasts.
///
/// Texts are told up to 65,536 characters; of collections with more than 500 items, the first 500 are told. The value
/// of a password field is never asked for. Where an application stands in a sandbox with process identifiers of its
/// own, it may not be found.
class AtspiTree : public AccessibilityTree {
public:
    /// `address` is that of the accessibility bus. Throws BusError where it cannot be reached. The log is told of an
    /// application that does not answer.
    AtspiTree(const std::string& address, std::function<void(const std::string& message)> log,
              const AtspiPatience& patience = {});

    Task<AccessibilityElementHandle> applicationElement(std::int32_t processIdentifier) override;
    Task<std::vector<AccessibilityAnswer>> read(std::vector<AccessibilityElementHandle> elements,
                                                AccessibilityQuery query) override;
    /// Takes "AXValue" only. A number goes to a range, any text to a field.
    Task<bool> setValue(AccessibilityElementHandle element, std::string attribute, std::string text) override;

private:
    std::vector<AtspiFacts> gather(const std::vector<AtspiElementHandle>& elements, AtspiFactSet wanted);
    void noteSilence(const std::vector<AtspiElementHandle>& elements) const;

    std::function<void(const std::string& message)> log_;
    AtspiPatience patience_;
    BusConnection bus_;
    AtspiElements elements_;
};

} // namespace vesk
