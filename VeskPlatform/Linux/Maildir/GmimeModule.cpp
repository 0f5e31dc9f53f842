#include "VeskPlatform/Linux/Maildir/GmimeMessageReader.hpp"

extern "C" __attribute__((visibility("default"))) const vesk::maildir::MessageReader* vesk_message_reader() {
    static const vesk::maildir::GmimeMessageReader reader;
    return &reader;
}
