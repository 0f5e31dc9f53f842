#pragma once

#include <CoreFoundation/CoreFoundation.h>

#include <utility>

namespace vesk {

/// Owns one reference to a Core Foundation object, which it was given by a function whose name has "Create" or "Copy"
/// in it; may be empty.
template <class Reference> class CFOwned {
public:
    CFOwned() = default;
    explicit CFOwned(Reference reference) : reference_(reference) {}
    CFOwned(CFOwned&& other) noexcept : reference_(std::exchange(other.reference_, nullptr)) {}
    CFOwned& operator=(CFOwned&& other) noexcept {
        std::swap(reference_, other.reference_);
        return *this;
    }
    ~CFOwned() {
        if (reference_ != nullptr) CFRelease(reference_);
    }

    Reference get() const { return reference_; }
    explicit operator bool() const { return reference_ != nullptr; }
    /// For functions that hand out a reference through a pointer. Called while empty.
    Reference* out() { return &reference_; }

private:
    Reference reference_ = nullptr;
};

} // namespace vesk
