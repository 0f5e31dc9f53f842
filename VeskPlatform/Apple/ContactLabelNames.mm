#import "VeskPlatform/Apple/ContactLabelNames.hpp"

#import <Contacts/Contacts.h>

#import "VeskPlatform/Apple/FoundationValues.hpp"
#include "VeskPlatform/ContactStore.hpp"

#include <array>

namespace vesk {
namespace {

struct KnownLabel {
    const char* stored;
    NSString* native;
};

const std::array<KnownLabel, 6>& knownLabels() {
    static const std::array<KnownLabel, 6> labels = {{{contactLabel::iPhone, CNLabelPhoneNumberiPhone},
                                                      {contactLabel::mobile, CNLabelPhoneNumberMobile},
                                                      {contactLabel::main, CNLabelPhoneNumberMain},
                                                      {contactLabel::home, CNLabelHome},
                                                      {contactLabel::work, CNLabelWork},
                                                      {contactLabel::other, CNLabelOther}}};
    return labels;
}

} // namespace

NSString* _Nullable nativeLabel(const std::optional<std::string>& label) {
    for (const KnownLabel& each : knownLabels())
        if (label == each.stored) return each.native;
    return optionalNsString(label);
}

std::optional<std::string> storedLabel(NSString* _Nullable label) {
    if (label == nil) return std::nullopt;
    for (const KnownLabel& each : knownLabels())
        if ([each.native isEqualToString:known(label)]) return each.stored;
    return utf8(known(label));
}

} // namespace vesk
