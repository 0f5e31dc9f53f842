#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"
#include "VeskPlatform/Apple/AXElement.hpp"

#include <functional>
#include <string>
#include <vector>

namespace vesk {

/// Asks an application about its elements, one question after the other; the calling thread waits for each answer. An
/// application that lets one question wait for as long as the system does, which is seconds, is asked nothing more.
class AXQuestions {
public:
    explicit AXQuestions(AXElements& elements) : elements_(elements) {}

    /// What could not be read is not there.
    AccessibilityAnswer answerTo(const AXElement& element, const AccessibilityQuery& query);

private:
    std::optional<AccessibilityValue> value(const AXElement& element, const std::string& attribute);
    bool isSettable(const AXElement& element, const std::string& attribute);
    bool isAnswered(const std::function<AXError()>& question);

    AXElements& elements_;
    bool isSilent_ = false;
};

} // namespace vesk
