#pragma once

#include "VeskPlatform/AccessibilityTree.hpp"
#include "VeskPlatform/Apple/CoreFoundationReference.hpp"

#import <ApplicationServices/ApplicationServices.h>

#include <cstddef>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <utility>

namespace vesk {

/// An accessibility element of the system.
class AXElement : public AccessibilityElement {
public:
    /// `element` is not empty.
    explicit AXElement(CFOwned<AXUIElementRef> element) : element_(std::move(element)) {}
    AXUIElementRef get() const { return element_.get(); }

private:
    CFOwned<AXUIElementRef> element_;
};

/// A reference of one's own to an element that somebody else owns.
CFOwned<AXUIElementRef> retained(AXUIElementRef element);

using AXElementHandle = std::shared_ptr<const AXElement>;

/// One handle for each element while somebody holds it. The system makes a new object each time that it is asked for an
/// element; those of one element are equal. Safe from any thread.
class AXElements {
public:
    /// The handle of an element that is not empty.
    AXElementHandle handle(CFOwned<AXUIElementRef> element);

private:
    struct Hash {
        std::size_t operator()(AXUIElementRef element) const { return CFHash(element); }
    };
    struct Equal {
        bool operator()(AXUIElementRef one, AXUIElementRef other) const { return CFEqual(one, other) != 0; }
    };
    struct Known {
        /// Keeps the key alive when nobody holds the handle any more.
        CFOwned<AXUIElementRef> key;
        std::weak_ptr<const AXElement> handle;
    };

    void forgetReleased();

    std::mutex mutex_;
    std::unordered_map<AXUIElementRef, Known, Hash, Equal> known_;
    std::size_t enough_ = 1024;
};

} // namespace vesk
