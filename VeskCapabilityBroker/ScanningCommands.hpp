#pragma once

#include "VeskCapabilityBroker/CommandLineParser.hpp"

// The commands whose flags may stand in any order. Each takes the arguments behind its word and throws UsageError.

namespace vesk {

BrokerCommand parseCalendarSnapshot(Arguments rest);
BrokerCommand parseCalendarCreate(Arguments rest);
BrokerCommand parseCalendarRespondInvite(Arguments rest);
BrokerCommand parseTodoList(Arguments rest);
BrokerCommand parseTodoAdd(Arguments rest);
BrokerCommand parseTodoUpdate(Arguments rest);
BrokerCommand parseMessagesList(Arguments rest);
BrokerCommand parseMessagesSend(Arguments rest);
BrokerCommand parseMailList(Arguments rest);
BrokerCommand parseMailCheckFollowup(Arguments rest);
BrokerCommand parseClick(Arguments rest);

} // namespace vesk
