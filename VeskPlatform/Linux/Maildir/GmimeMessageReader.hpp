#pragma once

#include "VeskPlatform/Linux/Maildir/MessageReader.hpp"

#include <gmime/gmime.h>

namespace vesk::maildir {

/// Reads messages with GMime. Headers in no character set are UTF-8 where they are well-formed, else Windows-1252.
class GmimeMessageReader : public MessageReader {
public:
    GmimeMessageReader();
    ~GmimeMessageReader() override;
    GmimeMessageReader(const GmimeMessageReader&) = delete;
    GmimeMessageReader& operator=(const GmimeMessageReader&) = delete;

    MessageHeaders headers(std::string_view bytes) const override;
    MessageText text(std::string_view bytes) const override;

private:
    GMimeParserOptions* options_; ///< Only ever read.
};

} // namespace vesk::maildir
