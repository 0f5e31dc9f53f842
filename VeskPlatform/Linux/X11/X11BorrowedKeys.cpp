#include "VeskPlatform/Linux/X11/X11BorrowedKeys.hpp"

#include "VeskPlatform/Linux/X11/X11Keymap.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <thread>
#include <utility>

namespace vesk {

X11BorrowedKeys::X11BorrowedKeys(X11Connection& connection, std::string display)
    : connection_(connection), display_(std::move(display)) {}

X11BorrowedKeys::~X11BorrowedKeys() {
    try {
        giveBack();
    } catch (const ErrorRecord&) { // without a display there is nothing to give back
    }
}

void X11BorrowedKeys::adoptKeymap(const X11Keymap& keymap) {
    spare_ = keymap.spareKeys();
    std::erase_if(loans_, [&](const Loan& loan) { return keymap.meaningOf(loan.meaning.key) != loan.meaning.symbol; });
    keys_.clear();
    for (const Loan& loan : loans_) keys_.insert(loan.meaning.key);
}

std::optional<xcb_keycode_t> X11BorrowedKeys::freeKey() const {
    const auto found = std::ranges::find_if(spare_, [this](xcb_keycode_t key) { return !keys_.contains(key); });
    return found == spare_.end() ? std::nullopt : std::optional(*found);
}

/// The loan of the key that is to have a new meaning, in the hands of the keeper before it has one.
X11BorrowedKeys::Loan* X11BorrowedKeys::lend(xcb_keycode_t key) {
    if (!keeper_) keeper_.emplace(display_);
    keys_.insert(key);
    return &loans_.emplace_back(Loan{{key, 0, 0}, {}});
}

std::optional<xcb_keycode_t> X11BorrowedKeys::keyFor(xkb_keysym_t symbol, xkb_keysym_t shifted) {
    const auto known = std::ranges::find_if(
        loans_, [&](const Loan& loan) { return loan.meaning.symbol == symbol && loan.meaning.shifted == shifted; });
    Loan* loan = known == loans_.end() ? nullptr : &*known;
    if (loan == nullptr) {
        const auto key = freeKey();
        if (!key && loans_.empty()) return std::nullopt;
        loan = key ? lend(*key) : &*std::ranges::min_element(loans_, {}, &Loan::lastUse);
        std::this_thread::sleep_until(loan->lastUse + meaningLasts);
        loan->meaning.symbol = symbol;
        loan->meaning.shifted = shifted;
        keeper_->note(loan->meaning);
        setMeaning(connection_.get(), loan->meaning.key, symbol, shifted);
    }
    loan->lastUse = std::chrono::steady_clock::now();
    return loan->meaning.key;
}

void X11BorrowedKeys::giveBack() {
    if (loans_.empty()) return;
    connection_.synchronize();
    std::this_thread::sleep_until(std::ranges::max_element(loans_, {}, &Loan::lastUse)->lastUse + meaningLasts);
    for (const Loan& loan : std::exchange(loans_, {})) takeMeaningBack(connection_.get(), loan.meaning);
    connection_.synchronize();
    keeper_->release();
}

} // namespace vesk
