#pragma once

#include "VeskPlatform/Linux/Maildir/MessageReader.hpp"

#include <gmime/gmime.h>
#include <memory>
#include <vector>

namespace vesk::maildir::gmime {

struct Unreference {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class T> using Object = std::unique_ptr<T, Unreference>;

/// The parts of text types, those first that show what the message says: in their order, the plain one of alternatives
/// ahead of its like; then calendars; then attached files. They live as long as the message.
std::vector<GMimePart*> textParts(GMimeMessage* message);

/// What a part of a text type holds, in UTF-8; not found where it is blank. `sourceLength` is that of the message as
/// far as it was parsed: a part that reaches it may have been cut.
MessageText textOfPart(GMimePart* part, std::size_t sourceLength);

} // namespace vesk::maildir::gmime
