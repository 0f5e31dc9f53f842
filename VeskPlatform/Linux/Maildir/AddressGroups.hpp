#pragma once

#include <string>

namespace vesk::maildir {

/// Takes the depth out of groups of addresses that stand in each other ("a: b: c: …;"): the parser of addresses goes
/// one call deeper for each, and a message may have more of them than a stack holds. Mail has no such groups (RFC 5322,
/// section 3.4). In the address headers of `bytes`, those of forwarded messages among them, colons beyond the first
/// hundred become blanks.
void flattenAddressGroups(std::string& bytes);

} // namespace vesk::maildir
