#include "VeskPlatform/Linux/X11/X11BorrowedKeys.hpp"

#include "VeskPlatform/Linux/X11/X11Keymap.hpp"
#include "VeskSupport/ErrorRecord.hpp"

#include <algorithm>
#include <thread>
#include <utility>

namespace vesk {

namespace {

/// For as long as it lives the server hears this connection alone.
class ServerGrab {
public:
    explicit ServerGrab(X11Connection& connection) : connection_(connection) { xcb_grab_server(connection_.get()); }
    ~ServerGrab() {
        xcb_ungrab_server(connection_.get());
        xcb_flush(connection_.get());
    }
    ServerGrab(const ServerGrab&) = delete;
    ServerGrab& operator=(const ServerGrab&) = delete;

private:
    X11Connection& connection_;
};

} // namespace

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

bool X11BorrowedKeys::isStillFree(xcb_keycode_t key) {
    const auto now =
        connection_.answer<xcb_get_keyboard_mapping_reply_t>(xcb_get_keyboard_mapping(connection_.get(), key, 1));
    if (!now) return false;
    const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(now.get());
    return std::all_of(symbols, symbols + now->keysyms_per_keycode,
                       [](xcb_keysym_t symbol) { return symbol == XCB_NO_SYMBOL; });
}

/// The keeper has the loan in its hands before the key means something.
void X11BorrowedKeys::giveMeaning(const KeyLoan& meaning) {
    keeper_->note(meaning);
    setMeaning(connection_.get(), meaning.key, meaning.symbol, meaning.shifted);
}

/// The loan of one more key. Another program may borrow keys at the same time, so the server hears nobody else between
/// the look at a key and its new meaning.
X11BorrowedKeys::Loan* X11BorrowedKeys::lend(xkb_keysym_t symbol, xkb_keysym_t shifted) {
    if (!freeKey()) return nullptr;
    if (!keeper_) keeper_.emplace(display_);
    const ServerGrab grab(connection_);
    while (const auto key = freeKey()) {
        if (isStillFree(*key)) {
            keys_.insert(*key);
            Loan& loan = loans_.emplace_back(Loan{{*key, symbol, shifted}, {}});
            giveMeaning(loan.meaning);
            return &loan;
        }
        std::erase(spare_, *key);
    }
    return nullptr;
}

/// The loan whose last use is the longest ago, with another meaning.
X11BorrowedKeys::Loan* X11BorrowedKeys::lendAgain(xkb_keysym_t symbol, xkb_keysym_t shifted) {
    if (loans_.empty()) return nullptr;
    Loan& loan = *std::ranges::min_element(loans_, {}, &Loan::lastUse);
    std::this_thread::sleep_until(loan.lastUse + meaningLasts);
    loan.meaning = {loan.meaning.key, symbol, shifted};
    giveMeaning(loan.meaning);
    return &loan;
}

std::optional<xcb_keycode_t> X11BorrowedKeys::keyFor(xkb_keysym_t symbol, xkb_keysym_t shifted) {
    const auto known = std::ranges::find_if(
        loans_, [&](const Loan& loan) { return loan.meaning.symbol == symbol && loan.meaning.shifted == shifted; });
    Loan* loan = known == loans_.end() ? lend(symbol, shifted) : &*known;
    if (loan == nullptr) loan = lendAgain(symbol, shifted);
    if (loan == nullptr) return std::nullopt;
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
